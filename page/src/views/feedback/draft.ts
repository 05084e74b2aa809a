import type { Feedback, FeedbackOrigin } from '@/client';
import { feedbackOrigins, type FeedbackOriginName } from '@/tasks/handover';

/** What feedback can be about; support sorts by these words. */
export const categories = ['crash', 'layout', 'print', 'font', 'input', 'update', 'other'] as const;
export type Category = (typeof categories)[number];

export const mostAttachments = 3;

export interface Draft extends Feedback {
    category: Category;
}

/** A report about the machine helps with almost everything; a dump may hold private data. */
export function emptyDraft(): Draft {
    return {
        category: 'other',
        description: '',
        sample: '',
        attachments: [],
        systemInformation: true,
        suiteSettings: true,
        crashDumps: false,
    };
}

/** The draft with another sample; a file that was attached until now is moved, not doubled. */
export function withSample(draft: Draft, sample: string): Draft {
    return { ...draft, sample, attachments: draft.attachments.filter((path) => path !== sample) };
}

const byOrigin: Record<FeedbackOriginName, Partial<Draft>> = {
    layout: { category: 'layout' },
    print: { category: 'print' },
    missingfonts: { category: 'font' },
    crash: { category: 'crash', crashDumps: true },
};

/** The draft for someone who comes from another view, perhaps with a document. */
export function draftFrom({ page, file }: FeedbackOrigin): Draft {
    const origin = feedbackOrigins.find((name) => name === page);
    return { ...emptyDraft(), ...(origin ? byOrigin[origin] : {}), sample: file ?? '' };
}
