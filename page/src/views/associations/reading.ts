import type { Client, Outcome } from '@/client';
import { associationGroups, type AssociationGroup } from './associationrows';

/** Both listings, one after the other: the library can only do one at a time. */
export async function readAssociations(client: Client): Promise<Outcome<AssociationGroup[]>> {
    const mimeTypes = await client.mimeTypes();
    if (mimeTypes.kind !== 'done') return mimeTypes;
    const defaults = await client.defaultApplications();
    if (defaults.kind !== 'done') return defaults;
    return { kind: 'done', value: associationGroups(mimeTypes.value, defaults.value) };
}
