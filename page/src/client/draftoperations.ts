/** The feedback that has not been sent yet, which a shell may keep. */
import type { Caller } from './wire/caller';
import { flag, members, text } from './wire/decode';

const storageKey = 'assistant.feedbackDraft';

/** Keeps it where the page keeps its preferences. */
const inPage = {
    read: (): Promise<string> => Promise.resolve(localStorage.getItem(storageKey) ?? ''),
    keep(draft: string): Promise<boolean> {
        try {
            if (draft) localStorage.setItem(storageKey, draft);
            else localStorage.removeItem(storageKey);
            return Promise.resolve(true);
        } catch {
            return Promise.resolve(false);
        }
    },
};

export function draftOperations(caller: Caller) {
    const inShell = {
        async read(): Promise<string> {
            const read = await caller.operate('draft.read', (result) => text(members(result).text));
            return read.kind === 'done' ? read.value : '';
        },
        async keep(draft: string): Promise<boolean> {
            const kept = await caller.operate(
                'draft.keep',
                (result) => flag(members(result).kept),
                { text: draft },
            );
            return kept.kind === 'done' && kept.value;
        },
    };
    const place = (): typeof inPage => (caller.offers('draft.keep') ? inShell : inPage);
    return {
        /** Empty if there is none. */
        read: () => place().read(),
        /** Replaces what is kept; an empty text discards it. Gives whether that can be done. */
        keep: (draft: string) => place().keep(draft),
    };
}
