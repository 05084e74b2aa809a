import type { Client, DumpList, Outcome } from '@/client';

interface DumpReading {
    /** Whether the suite keeps dumps. */
    enabled: boolean;
    /** Whether a dump is there to send. */
    dumpAvailable: boolean;
    /** Where the shell looks at the files itself. */
    list: DumpList | null;
}

/** The shell tells what the settings file has; the library also what it could not write there. */
export async function readDumps(client: Client): Promise<Outcome<DumpReading>> {
    if (!client.dumps.isOffered) {
        const state = await client.dumpState();
        if (state.kind !== 'done') return state;
        return { kind: 'done', value: { ...state.value, list: null } };
    }
    const read = await client.dumps.read();
    if (read.kind !== 'done') return read;
    const { kept, dumps } = read.value;
    const dumpAvailable = dumps.some(({ program }) => program !== '');
    return { kind: 'done', value: { enabled: kept, dumpAvailable, list: read.value } };
}
