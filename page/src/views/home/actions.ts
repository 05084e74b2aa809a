import { onBeforeUnmount, onMounted } from 'vue';
import type { Client } from '@/client';

/**
 * Does what the user asked for from outside of the window, at its start or while it is open;
 * `actions` has what to do by its name.
 */
export function useActions(client: Client, actions: Record<string, () => void>): void {
    async function take(): Promise<void> {
        const taken = await client.window.takeAction();
        if (taken.kind === 'done') actions[taken.value.action]?.();
    }

    let stop: (() => void) | undefined;
    onMounted(async () => {
        if (!client.window.isShared) return;
        stop = client.window.listen(({ action }) => {
            if (action) void take();
        });
        const state = await client.window.state();
        if (state.kind === 'done' && state.value.action) void take();
    });
    onBeforeUnmount(() => stop?.());
}
