import type { Caller } from './wire/caller';
import { success } from './wire/decode';

/** The work that the library starts and stops with a view; most views have none. */
export type ViewType = '' | 'searchfile' | 'crash' | 'vyrrunningcheck';

/** Moving between windows and views. */
export function windowCommands(caller: Caller) {
    return {
        pressTitleBar: () => caller.tell('mousePress'),
        releaseTitleBar: () => caller.tell('mouseRelease'),
        closeMainWindow: () => caller.tell('closemainwindow'),
        minimise: () => caller.tell('showminimized'),
        openView: (page: string, type: ViewType) => caller.ask('router', success, { page, type }),
        closeChildWindow: (type: ViewType) => caller.tell('closechildwindow', { type }),
    };
}
