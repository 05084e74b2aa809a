import type { Client, DocumentOpenings, Outcome } from '@/client';
import { associationGroups, openingGroups, type AssociationReading } from './associationrows';

export function readingOf(openings: DocumentOpenings): AssociationReading {
    return { groups: openingGroups(openings), suite: openings.suite, suiteName: openings.name };
}

/** Both listings, one after the other: the library can only do one at a time. */
async function readListings(client: Client): Promise<Outcome<AssociationReading>> {
    const mimeTypes = await client.mimeTypes();
    if (mimeTypes.kind !== 'done') return mimeTypes;
    const defaults = await client.defaultApplications();
    if (defaults.kind !== 'done') return defaults;
    const groups = associationGroups(mimeTypes.value, defaults.value);
    return { kind: 'done', value: { groups, suite: null, suiteName: '' } };
}

/** What the desktop says of all document types. */
export async function readAssociations(client: Client): Promise<Outcome<AssociationReading>> {
    if (!client.openings.isOffered) return readListings(client);
    const read = await client.openings.read();
    return read.kind === 'done' ? { kind: 'done', value: readingOf(read.value) } : read;
}
