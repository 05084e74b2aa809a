/** All processes of the machine and its load, from a shell that lists them. */
import type { Caller } from './wire/caller';
import { flag, list, members, number, optional, text } from './wire/decode';

export interface ListedProcess {
    id: number;
    /** Tells it from a later process of the same number. */
    start: string;
    user: string;
    /** Whether it runs for the user of the window. */
    isOwn: boolean;
    /** The name of the program that runs. */
    program: string;
    command: string;
    /** Bytes of its own. */
    memory: number;
    /** Milliseconds of processors that it has used so far. */
    processorTime: number;
}

/** Per cent of the last 10, 60 and 300 seconds in which something had to wait. */
type Waited = number[];

export interface MachineReading {
    processes: ListedProcess[];
    /** In bytes; null when the machine does not tell. */
    memory: Record<'total' | 'available' | 'swapTotal' | 'swapFree', number | null>;
    /** The load averages of the last 1, 5 and 15 minutes. */
    load: number[];
    pressure: Record<'cpu' | 'memory' | 'io', Waited>;
    processors: number;
}

/** How the desktop shows a program. */
export interface ProgramLook {
    title: string;
    /** A data address, or nothing. */
    icon: string;
}

function process(result: unknown): ListedProcess {
    const line = members(result);
    return {
        id: number(line.id),
        start: text(line.start),
        user: text(line.user),
        isOwn: flag(line.isOwn),
        program: text(line.program),
        command: text(line.command),
        memory: number(line.memory),
        processorTime: number(line.processorTime),
    };
}

function reading(result: unknown): MachineReading {
    const { processes, memory, load, pressure, processors } = members(result);
    const bytes = members(memory);
    const waits = members(pressure);
    const size = (name: string) => optional(bytes[name], number, null);
    const waited = (name: string) => list(optional(waits[name], list, [])).map(number);
    return {
        processes: list(processes).map(process),
        memory: {
            total: size('total'),
            available: size('available'),
            swapTotal: size('swapTotal'),
            swapFree: size('swapFree'),
        },
        load: list(load).map(number),
        pressure: { cpu: waited('cpu'), memory: waited('memory'), io: waited('io') },
        processors: number(processors),
    };
}

/** What a shell says of programs, by their names. */
export function programLooks(result: unknown): Map<string, ProgramLook> {
    const shown = Object.entries(members(result));
    return new Map(
        shown.map(([program, look]) => {
            const { title, icon } = members(look);
            return [program, { title: text(title), icon: optional(icon, text, '') }];
        }),
    );
}

export function processOperations(caller: Caller) {
    return {
        /** Whether this shell lists processes. */
        get isOffered(): boolean {
            return caller.offers('task.processes');
        },
        read: () => caller.perform('task.processes', reading),
        describe: (programs: string[]) =>
            caller.perform('task.programs', (result) => programLooks(members(result).programs), {
                programs,
            }),
        /** Answers whether it has ended. */
        end: ({ id, start }: ListedProcess, force: boolean) =>
            caller.perform('task.end', (result) => flag(members(result).ended), {
                id,
                start,
                force,
            }),
    };
}
