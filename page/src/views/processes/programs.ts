import type { ListedProcess, MachineReading, ProgramLook } from '@/client';
import { matcher } from '@/tasks/filter';

/** A reading and when it was made, in milliseconds. */
export interface TimedReading {
    time: number;
    reading: MachineReading;
}

/** A process with the per cent of one processor that it used since the last reading. */
export interface ShownProcess extends ListedProcess {
    /** Null before there are two readings of it. */
    processor: number | null;
}

/** All processes of one program. */
export interface ProgramRow {
    program: string;
    title: string;
    icon: string;
    users: string[];
    processes: ShownProcess[];
    memory: number;
    processor: number | null;
}

export type Column = 'title' | 'processor' | 'memory';

export interface Order {
    column: Column;
    descending: boolean;
}

function sum(numbers: number[]): number {
    return numbers.reduce((total, one) => total + one, 0);
}

/** The processes of a reading with what they used since the one before. */
export function shownProcesses(before: TimedReading | null, now: TimedReading): ShownProcess[] {
    const earlier = new Map(
        before?.reading.processes.map((process) => [`${process.id} ${process.start}`, process]),
    );
    const elapsed = before ? now.time - before.time : 0;
    return now.reading.processes.map((process) => {
        const same = earlier.get(`${process.id} ${process.start}`);
        const used = same ? process.processorTime - same.processorTime : null;
        return {
            ...process,
            processor: used === null || elapsed <= 0 ? null : Math.max(0, (used * 100) / elapsed),
        };
    });
}

/** The per cent of all processors that the processes used; null before there are two readings. */
export function wholeProcessor(processes: ShownProcess[], processors: number): number | null {
    const used = processes.flatMap(({ processor }) => processor ?? []);
    return used.length ? Math.min(100, sum(used) / Math.max(1, processors)) : null;
}

export function programRows(
    processes: ShownProcess[],
    looks: ReadonlyMap<string, ProgramLook>,
): ProgramRow[] {
    const groups = new Map<string, ShownProcess[]>();
    for (const process of processes) {
        const group = groups.get(process.program);
        if (group) group.push(process);
        else groups.set(process.program, [process]);
    }
    return [...groups].map(([program, group]) => {
        const used = group.flatMap(({ processor }) => processor ?? []);
        const look = looks.get(program);
        return {
            program,
            title: look?.title || program,
            icon: look?.icon ?? '',
            users: [...new Set(group.map(({ user }) => user))],
            processes: [...group].sort((first, second) => second.memory - first.memory),
            memory: sum(group.map(({ memory }) => memory)),
            processor: used.length ? sum(used) : null,
        };
    });
}

export function sortedRows(rows: readonly ProgramRow[], { column, descending }: Order) {
    const compare = (first: ProgramRow, second: ProgramRow): number =>
        column === 'title'
            ? first.title.localeCompare(second.title)
            : (first[column] ?? 0) - (second[column] ?? 0);
    return [...rows].sort(
        (first, second) =>
            (descending ? -1 : 1) * compare(first, second) ||
            first.program.localeCompare(second.program),
    );
}

/** The rows of which something has every word of the filter, with the processes that have it. */
export function matchingRows(rows: readonly ProgramRow[], filter: string): ProgramRow[] {
    const matches = matcher(filter);
    return rows.flatMap((row) => {
        if (matches(row.title, row.program, ...row.users)) return [row];
        const processes = row.processes.filter(({ command, id, user }) =>
            matches(row.title, command, String(id), user),
        );
        return processes.length ? [{ ...row, processes }] : [];
    });
}
