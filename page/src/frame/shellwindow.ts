import { onBeforeUnmount, onMounted, ref, type Ref } from 'vue';
import type { Client } from '@/client';

/** Whether the window is maximised, in a shell that says so. */
export function useMaximised(client: Client): Ref<boolean> {
    const maximised = ref(false);
    let stop: (() => void) | undefined;
    onMounted(async () => {
        if (!client.window.isShared) return;
        stop = client.window.listen((state) => {
            maximised.value = state.maximised;
        });
        const state = await client.window.state();
        if (state.kind === 'done') maximised.value = state.value.maximised;
    });
    onBeforeUnmount(() => stop?.());
    return maximised;
}
