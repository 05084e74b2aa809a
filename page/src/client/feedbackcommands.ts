import type { Caller } from './wire/caller';
import { base64Text, members, text } from './wire/decode';
import type { Outcome } from './wire/outcome';

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

/** Names in the archive, which has one folder; of two equal ones the later gets a number. */
export function archiveNames(paths: string[], reserved: readonly string[]): string[] {
    const taken = new Set(reserved);
    return paths.map((path) => {
        const name = path.slice(path.lastIndexOf('/') + 1);
        let free = name;
        for (let number = 2; taken.has(free); number += 1) free = `${number}-${name}`;
        taken.add(free);
        return free;
    });
}

/** Files that the archive has of its own. */
export const settingFiles = ['Office.conf', 'ome.ini', 'feature.dat', 'product.dat', 'setup.cfg'];
export const ownFiles = ['describe.txt', 'description.txt', 'sysinfo.txt', ...settingFiles];

function taskArguments(feedback: Feedback): Record<string, unknown> {
    const paths = [feedback.sample, ...feedback.attachments].filter((path) => path !== '');
    const names = archiveNames(paths, ownFiles);
    return {
        type: feedback.category,
        description: feedback.description,
        files: paths.map((path, index) => ({ path, name: names[index] })),
        report: feedback.systemInformation,
        settings: feedback.suiteSettings,
        dumps: feedback.crashDumps,
    };
}

const archiveFile = (result: unknown): string => text(members(result).file);

/** The path that was chosen lacks the archive's ending. */
const startedArchive = (result: unknown): string => `${base64Text(result)}.tar.gz`;

/** The feedback archive and the view that asks for it. A dialog that is cancelled has failed. */
export function feedbackCommands(caller: Caller) {
    return {
        rememberFeedbackOrigin: (infopage: string) => caller.tell('feedbacktovyr', { infopage }),
        /** The library does not know the document that the shell itself has printed. */
        async feedbackOrigin(): Promise<Outcome<FeedbackOrigin>> {
            const from = await caller.ask('getcollectionpage', feedbackOrigin);
            if (from.kind !== 'done' || from.value.page !== 'print') return from;
            if (!caller.offers('task.printed')) return from;
            const printed = await caller.operate('task.printed', (result) =>
                text(members(result).document),
            );
            return printed.kind === 'done'
                ? { kind: 'done', value: { page: 'print', file: printed.value } }
                : printed;
        },
        chooseSample: () => caller.ask('choosesamplefile', base64Text),
        chooseAttachment: () => caller.ask('chooseattachment', base64Text),
        /**
         * The path of the archive, whose folder a shell may open. The command writes it after its
         * answer, without files that have blanks in their paths.
         */
        buildArchive: (feedback: Feedback, openFolder: boolean) =>
            caller.offers('task.archive')
                ? caller.perform('task.archive', archiveFile, {
                      ...taskArguments(feedback),
                      open: openFolder,
                  })
                : caller.ask('archivepackage', startedArchive, archiveArguments(feedback)),
    };
}
