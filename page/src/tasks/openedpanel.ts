import { nextTick, onMounted, ref } from 'vue';

/** The root of a panel that was just opened: it takes the focus and comes into sight. */
export function useOpenedPanel() {
    const panel = ref<HTMLElement>();
    onMounted(async () => {
        await nextTick();
        panel.value?.focus({ preventScroll: true });
        panel.value?.scrollIntoView({ block: 'nearest' });
    });
    return panel;
}
