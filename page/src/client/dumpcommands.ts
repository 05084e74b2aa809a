import type { Caller } from './wire/caller';
import { flag, list, members, number, success, text } from './wire/decode';

interface DumpState {
    /** Whether the suite keeps crash dumps. */
    enabled: boolean;
    /** Whether a dump is there to send. */
    dumpAvailable: boolean;
}

function dumpState(result: unknown): DumpState {
    const { enable, feedback } = members(result);
    return { enabled: flag(enable), dumpAvailable: flag(feedback) };
}

/** A file in the folder of dumps. */
export interface Dump {
    name: string;
    /** In bytes. */
    size: number;
    changed: Date;
    /** The suite's program that has left it; empty for any other file. */
    program: string;
    /** Such as "SIGSEGV"; empty where it does not tell. */
    signal: string;
}

export interface DumpList {
    /** Whether the settings file says that the suite keeps dumps. */
    kept: boolean;
    folder: string;
    /** Of all files; the list may be shorter. */
    count: number;
    dumps: Dump[];
}

function dumpList(result: unknown): DumpList {
    const { kept, folder, count, dumps } = members(result);
    return {
        kept: flag(kept),
        folder: text(folder),
        count: number(count),
        dumps: list(dumps).map((one) => {
            const { name, size, changed, program, signal } = members(one);
            return {
                name: text(name),
                size: number(size),
                changed: new Date(text(changed)),
                program: text(program),
                signal: text(signal),
            };
        }),
    };
}

/** The dumps themselves, from a shell that looks at them. */
export function dumpOperations(caller: Caller) {
    return {
        get isOffered(): boolean {
            return caller.offers('task.dumps');
        },
        read: () => caller.perform('task.dumps', dumpList),
        /** Answers whether the desktop shows the folder. */
        openFolder: () =>
            caller.perform('task.dumpfolder', (result) => flag(members(result).opened)),
    };
}

/** Crash dumps of the suite. */
export function dumpCommands(caller: Caller) {
    return {
        dumpState: () => caller.ask('getDumpState', dumpState),
        startKeepingDumps: () => caller.ask('startDump', success),
        stopKeepingDumps: () => caller.ask('stopDump', success),
        clearDumps: () => caller.ask('cleardumpdir', success),
    };
}
