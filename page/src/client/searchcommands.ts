import type { Caller } from './wire/caller';
import { success } from './wire/decode';

/** File search; hits come as notices. */
export function searchCommands(caller: Caller) {
    return {
        /** Stops an earlier search; an empty keyword only does that. */
        startSearch: (keyword: string) => caller.tell('startsearchfile', { keyword }),
        /** Unanswered when the host considers the file unsafe to open. */
        openFoundFile: (file: string) => caller.ask('opensearchfile', success, { file }),
    };
}
