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
        get keepsPictures(): boolean {
            return caller.offers('draft.picture');
        },
        /** Keeps a PNG picture with the draft; gives its path, or nothing where that fails. */
        async keepPicture(content: string): Promise<string> {
            const kept = await caller.operate(
                'draft.picture',
                (result) => text(members(result).file),
                { content },
            );
            return kept.kind === 'done' ? kept.value : '';
        },
        /** Where feedback goes, as the administrator has set it; empty if nowhere. */
        async receiver(): Promise<string> {
            if (!caller.offers('draft.receiver')) return '';
            const set = await caller.operate('draft.receiver', (result) =>
                text(members(result).address),
            );
            return set.kind === 'done' ? set.value : '';
        },
        /** Opens that address; gives whether a program for it was there. */
        async write(): Promise<boolean> {
            const wrote = await caller.operate('draft.write', (result) =>
                flag(members(result).opened),
            );
            return wrote.kind === 'done' && wrote.value;
        },
    };
}
