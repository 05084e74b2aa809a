import type { Caller } from './caller';
import { base64Text, members, text } from './decode';

export interface Feedback {
    category: string;
    description: string;
    sample: string;
    /** At most three. */
    attachments: string[];
    systemInformation: boolean;
    suiteSettings: boolean;
    crashDumps: boolean;
}

/** The view that feedback was opened from, with the document that it was about. */
export interface FeedbackOrigin {
    page: string;
    file: string | null;
}

function feedbackOrigin(result: unknown): FeedbackOrigin {
    const { page, file } = members(result);
    return { page: text(page), file: file === undefined ? null : text(file) };
}

function archiveArguments(feedback: Feedback): Record<string, unknown> {
    const [first = '', second = '', third = ''] = feedback.attachments;
    return {
        archiveType: feedback.category,
        archiveDescribe: feedback.description,
        archiveSample: feedback.sample,
        archiveAttach1: first,
        archiveAttach2: second,
        archiveAttach3: third,
        // The library asks only whether this text is empty, unlike for the two flags below.
        archiveSysInfo: feedback.systemInformation ? 'true' : '',
        archiveVyrInfo: feedback.suiteSettings,
        archiveDumpInfo: feedback.crashDumps,
    };
}

/** The feedback archive and the view that asks for it. A dialog that is cancelled has failed. */
export function feedbackCommands(caller: Caller) {
    return {
        rememberFeedbackOrigin: (infopage: string) => caller.tell('feedbacktovyr', { infopage }),
        feedbackOrigin: () => caller.ask('getcollectionpage', feedbackOrigin),
        chooseSample: () => caller.ask('choosesamplefile', base64Text),
        chooseAttachment: () => caller.ask('chooseattachment', base64Text),
        /** The path of the archive, without its ".tar.gz"; it is written after the answer. */
        buildArchive: (feedback: Feedback) =>
            caller.ask('archivepackage', base64Text, archiveArguments(feedback)),
    };
}
