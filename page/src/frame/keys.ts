import { onBeforeUnmount, onMounted } from 'vue';

/** The name of a pressed key: “F5”, “Control+f”, “Alt+ArrowLeft”. */
function nameOf(event: KeyboardEvent): string {
    const control = event.ctrlKey || event.metaKey ? 'Control+' : '';
    const alt = event.altKey ? 'Alt+' : '';
    return control + alt + (event.key.length === 1 ? event.key.toLowerCase() : event.key);
}

/**
 * Handles keys for as long as the component is mounted: runs what `actionOf` gives for a key that
 * nothing else has taken.
 */
export function useKeys(actionOf: (key: string) => (() => void) | undefined): void {
    function act(event: KeyboardEvent): void {
        if (event.defaultPrevented) return;
        const action = actionOf(nameOf(event));
        if (!action) return;
        event.preventDefault();
        action();
    }
    onMounted(() => window.addEventListener('keydown', act));
    onBeforeUnmount(() => window.removeEventListener('keydown', act));
}
