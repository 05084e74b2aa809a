import { onBeforeUnmount, onMounted, ref } from 'vue';

/**
 * Calls `work` every `interval` milliseconds, each time counted from the end of the last, while
 * the page is visible and not paused.
 */
export function createRefresher(work: () => Promise<unknown>, interval: number) {
    const paused = ref(false);
    let timer: ReturnType<typeof setTimeout> | undefined;
    let working = false;
    let stopped = false;

    function plan(): void {
        clearTimeout(timer);
        if (stopped || working || paused.value || document.hidden) return;
        timer = setTimeout(() => void refresh(), interval);
    }

    async function refresh(): Promise<void> {
        if (working) return;
        clearTimeout(timer);
        working = true;
        try {
            await work();
        } finally {
            working = false;
            plan();
        }
    }

    return {
        paused,
        /** Works at once, and counts the interval anew. */
        refresh,
        togglePause(): void {
            paused.value = !paused.value;
            plan();
        },
        visibilityChanged: plan,
        stop(): void {
            stopped = true;
            clearTimeout(timer);
        },
    };
}

/** The same for a component: it starts when mounted and ends with it. */
export function useRefresher(work: () => Promise<unknown>, interval: number) {
    const refresher = createRefresher(work, interval);
    onMounted(() => {
        document.addEventListener('visibilitychange', refresher.visibilityChanged);
        void refresher.refresh();
    });
    onBeforeUnmount(() => {
        document.removeEventListener('visibilitychange', refresher.visibilityChanged);
        refresher.stop();
    });
    return refresher;
}
