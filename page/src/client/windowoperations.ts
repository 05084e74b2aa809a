/** The window, in a shell that shows a view beside the main page and not in a second window. */
import type { Caller } from './wire/caller';
import { flag, members, optional, text, textList } from './wire/decode';

interface WindowState {
    /** What the user asked for from outside; empty if nothing or if it has been taken. */
    action: string;
    /** The page that is shown beside the main page; empty if none is. */
    view: string;
    maximised: boolean;
}

/** Widths of the main page beside a view, in pixels. */
interface SidebarWidths {
    width: number;
    /** In a small window. */
    narrow: number;
}

function windowState(result: unknown): WindowState {
    const { action, view, maximised } = members(result);
    return { action: optional(action, text, ''), view: text(view), maximised: flag(maximised) };
}

export function windowOperations(caller: Caller) {
    return {
        /** Whether views open in the window of the main page. */
        get isShared(): boolean {
            return caller.offers('window.sidebar');
        },
        /** Whether a view can have the main page search. */
        get finds(): boolean {
            return caller.offers('window.find');
        },
        /** Whether the window can prepare for a view. */
        get prepares(): boolean {
            return caller.offers('window.expect');
        },
        /** Whether files that are dropped on a page have paths. */
        get takesDrops(): boolean {
            return caller.offers('window.dropped');
        },
        /** The paths of what was dropped last, once. */
        dropped: () =>
            caller.operate('window.dropped', (result) => textList(members(result).paths)),
        state: () => caller.operate('window.state', windowState),
        /** Says that a view may be opened soon: the window prepares for it, unseen. */
        expectView: () => caller.operate('window.expect', windowState),
        /** Has the main page search tools, findings and settings. */
        find: () => caller.operate('window.find', windowState),
        /** The state from before the action was taken. */
        takeAction: () => caller.operate('window.action', windowState),
        toggleMaximised: () => caller.operate('window.maximise', windowState),
        /** Closes the view of that type; its own page need not answer. `next`: for another one. */
        leave: (type: string, next: boolean) =>
            caller.operate('window.leave', windowState, { type, next }),
        /** Gives the view that was open when the program ended, once. */
        useSidebar: (widths: SidebarWidths) =>
            caller.operate('window.sidebar', (result) => text(members(result).last), { ...widths }),
        /** Calls `listener` whenever the window has changed, until the answer is called. */
        listen(listener: (state: WindowState) => void): () => void {
            const receive = (event: Event): void =>
                listener(windowState((event as CustomEvent<unknown>).detail));
            window.addEventListener('heliowindow', receive);
            return () => window.removeEventListener('heliowindow', receive);
        },
    };
}
