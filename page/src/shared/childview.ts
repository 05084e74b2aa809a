import { onBeforeUnmount, onMounted } from 'vue';
import type { ViewType } from '@/client';
import { useClient } from './view';

/** What the keys of a view in the child window do. */
export interface ViewKeys {
    runAgain?: () => void;
    filter?: () => void;
}

/**
 * Closing a child view, and its keys: F5 runs again, Escape closes, Ctrl+F filters. The type is
 * asked for when the view closes, if only then it is known.
 */
export function useChildView(
    type: ViewType | (() => ViewType), keys: ViewKeys = {},
): { close: () => void } {
    const client = useClient();
    const close = (): void =>
        void client.closeChildWindow(typeof type === 'function' ? type() : type);

    function act(event: KeyboardEvent): void {
        const control = event.ctrlKey || event.metaKey;
        let action: (() => void) | undefined;
        if (event.key === 'F5') action = keys.runAgain;
        else if (event.key === 'Escape') action = close;
        else if (control && event.key.toLowerCase() === 'f') action = keys.filter;
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
