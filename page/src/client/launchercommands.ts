import type { Caller } from './wire/caller';
import { success } from './wire/decode';

/** Companion programs and the clipboard. */
export function launcherCommands(caller: Caller) {
    return {
        stopPreload: () => caller.ask('stoppreload', success),
        restartPreload: () => caller.ask('restartpreload', success),
        takeScreenshot: () => caller.ask('screenshots', success),
        recordScreen: () => caller.ask('recordscreen', success),
        openContentReplace: () => caller.ask('contentreplace', success),
        openApiLog: () => caller.ask('apilog', success),
        copyText: (verification: string) =>
            caller.ask('copytoclipboard', success, { verification }),
    };
}
