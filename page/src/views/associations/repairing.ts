import type { Client, Outcome } from '@/client';
import { readUntilSettled } from '@/tasks/settle';
import { problemCount, type AssociationReading } from './associationrows';
import { readAssociations, readingOf } from './reading';

/** A shell that asks the desktop itself also waits for it. */
async function repairHere(
    client: Client,
    extensions: string[],
    show: (reading: AssociationReading) => void,
): Promise<Outcome<boolean>> {
    const suffixes = extensions.map((extension) => extension.replace(/^\./, ''));
    const repaired = await client.openings.repair(suffixes);
    if (repaired.kind !== 'done') return repaired;
    const reading = readingOf(repaired.value);
    show(reading);
    const wanted = reading.groups.map(({ application, rows }) => ({
        application,
        rows: rows.filter(({ extension }) => !extensions.length || extensions.includes(extension)),
    }));
    return { kind: 'done', value: problemCount(wanted) === 0 };
}

/**
 * Has the suite open documents of these extensions, or all; `show` receives what is read meanwhile.
 * Answers whether they then do.
 */
export async function repairAssociations(
    client: Client,
    extensions: string[],
    show: (reading: AssociationReading) => void,
): Promise<Outcome<boolean>> {
    if (client.openings.isOffered) return repairHere(client, extensions, show);
    const started = await client.repairAssociations();
    if (started.kind !== 'done') return started;
    return readUntilSettled(() => readAssociations(client), {
        reached: ({ groups }) => problemCount(groups) === 0,
        show,
        interval: 1000,
        stillReadings: 4,
        mostReadings: 20,
    });
}
