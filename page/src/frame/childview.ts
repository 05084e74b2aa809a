import { onBeforeUnmount, onMounted } from 'vue';
import type { ViewType } from '@/client';
import { useClient } from './view';

/** What the keys of a view in the child window do, and whether it may close. */
interface ViewActions {
    runAgain?: () => void;
    filter?: () => void;
    /** Whether the view may close now; one that may not says why. */
    mayClose?: () => boolean;
}

/**
 * Closes a child view, and handles its keys: F5 runs again, Escape closes, Ctrl+F filters. The
 * type can be a function if it is only known when the view closes.
 */
export function useChildView(
    type: ViewType | (() => ViewType),
    actions: ViewActions = {},
): { close: () => void } {
    const client = useClient();
    const close = (): void => {
        if (actions.mayClose && !actions.mayClose()) return;
        void client.closeChildWindow(typeof type === 'function' ? type() : type);
    };

    function act(event: KeyboardEvent): void {
        const control = event.ctrlKey || event.metaKey;
        let action: (() => void) | undefined;
        if (event.key === 'F5') action = actions.runAgain;
        else if (event.key === 'Escape') action = close;
        else if (control && event.key.toLowerCase() === 'f') action = actions.filter;
        if (!action || event.defaultPrevented) return;
        event.preventDefault();
        action();
    }

    /** The window is closed from outside; without an answer the host would leave the type out. */
    function closeWithType(event: Event): void {
        event.preventDefault();
        close();
    }

    onMounted(() => {
        window.addEventListener('keydown', act);
        window.addEventListener('helioclose', closeWithType);
    });
    onBeforeUnmount(() => {
        window.removeEventListener('keydown', act);
        window.removeEventListener('helioclose', closeWithType);
    });
    return { close };
}
