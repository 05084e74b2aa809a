import { onBeforeUnmount, onMounted } from 'vue';
import type { ViewType } from '@/client';
import { useKeys } from './keys';
import { useClient } from './view';

/** What the keys of a view in the child window do, and whether it may close. */
interface ViewActions {
    runAgain?: () => void;
    filter?: () => void;
    /** Whether the view may close now; one that may not says why. */
    mayClose?: () => boolean;
}

/**
 * Closes a child view, and handles its keys: F5 runs again, Escape and Alt+Left close, Ctrl+F
 * filters, Ctrl+K searches the tools, F1 helps. The type can be a function if it is only known
 * when the view closes.
 */
export function useChildView(
    type: ViewType | (() => ViewType),
    actions: ViewActions = {},
): { close: () => void } {
    const client = useClient();
    /** Whether it has closed. */
    function tryToClose(): boolean {
        if (actions.mayClose && !actions.mayClose()) return false;
        void client.closeChildWindow(typeof type === 'function' ? type() : type);
        return true;
    }

    const close = (): void => void tryToClose();

    function help(): void {
        if (tryToClose()) void client.openView('about.html', '');
    }

    function find(): void {
        if (tryToClose()) void client.window.find();
    }

    useKeys(
        (key) =>
            ({
                F1: help,
                F5: actions.runAgain,
                Escape: close,
                'Alt+ArrowLeft': close,
                'Control+f': actions.filter,
                'Control+k': client.window.finds ? find : undefined,
            })[key],
    );
    /** The window is closed from outside; without an answer the host would leave the type out. */
    function closeWithType(event: Event): void {
        event.preventDefault();
        close();
    }

    onMounted(() => window.addEventListener('helioclose', closeWithType));
    onBeforeUnmount(() => window.removeEventListener('helioclose', closeWithType));
    return { close };
}
