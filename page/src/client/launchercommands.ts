import type { Caller } from './caller';
import { members, success, text } from './decode';

/** The view that feedback was opened from, with the document that it was about. */
export interface FeedbackOrigin {
    page: string;
    file: string | null;
}

function feedbackOrigin(result: unknown): FeedbackOrigin {
    const { page, file } = members(result);
    return { page: text(page), file: file === undefined ? null : text(file) };
}

/** Companion programs, the clipboard, and the hand-over to feedback. */
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
        /** Fails when the dialog was cancelled. */
        addConfigurationFile: () => caller.ask('addconfigfile', success),
        rememberFeedbackOrigin: (infopage: string) => caller.tell('feedbacktovyr', { infopage }),
        feedbackOrigin: () => caller.ask('getcollectionpage', feedbackOrigin),
    };
}
