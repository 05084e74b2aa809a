import type { Caller } from './wire/caller';
import { flag, members, success } from './wire/decode';

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

/** Crash dumps of the suite. */
export function dumpCommands(caller: Caller) {
    return {
        dumpState: () => caller.ask('getDumpState', dumpState),
        startKeepingDumps: () => caller.ask('startDump', success),
        stopKeepingDumps: () => caller.ask('stopDump', success),
        clearDumps: () => caller.ask('cleardumpdir', success),
    };
}
