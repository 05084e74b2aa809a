import { onBeforeUnmount, onMounted, ref, watch, type Ref } from 'vue';
import type { Client } from '@/client';
import type { Preferences } from '@/frame/preferences';

/** How the main page is laid out: whole, or beside a view with or without names. */
type Layout = 'page' | 'names' | 'icons';

/** Widths of the sidebar, in rem. */
const withNames = 14;
const iconsOnly = 3.5;

/** The window prepares for a view for longer than that. */
const expectedMs = 5_000;

const remInPixels = (): number => parseFloat(getComputedStyle(document.documentElement).fontSize);

/** The layout that fits the page's width. */
function layoutAt(width: number, rem: number): Layout {
    if (width > (withNames + 1) * rem) return 'page';
    return width < (withNames - 1) * rem ? 'icons' : 'names';
}

interface Sidebar {
    layout: Ref<Layout>;
    /** The page of the view beside this one; empty if there is none. */
    view: Ref<string>;
    /** Whether a view was expected: the sidebar may be made, unseen. */
    isExpected: Ref<boolean>;
    /** To be called where the user may be about to open a view: it opens in half the time then. */
    expect: () => void;
}

/**
 * The page's layout and the view beside it, in a shell that shows both in one window. `reopen` is
 * called with the page of the view that was open when the program ended.
 */
export function useSidebar(
    client: Client,
    preferences: Preferences,
    reopen: (page: string) => void,
): Sidebar {
    const layout = ref<Layout>('page');
    const view = ref('');
    const isExpected = ref(false);
    let expectedAt = -Infinity;
    function expect(): void {
        const now = performance.now();
        if (!client.window.prepares || now - expectedAt < expectedMs) return;
        expectedAt = now;
        isExpected.value = true;
        void client.window.expectView();
    }
    if (!client.window.isShared) return { layout, view, isExpected, expect };

    const measure = (): void => {
        layout.value = layoutAt(window.innerWidth, remInPixels());
    };
    async function tellWidths(): Promise<void> {
        const rem = remInPixels();
        const last = await client.window.useSidebar({
            width: Math.round(withNames * rem),
            narrow: Math.round(iconsOnly * rem),
        });
        if (last.kind === 'done' && last.value && !view.value) reopen(last.value);
    }
    async function start(): Promise<void> {
        // After a reload a view may be open already.
        const state = await client.window.state();
        if (state.kind === 'done') view.value = state.value.view;
        await tellWidths();
    }

    const stop = client.window.listen((state) => {
        view.value = state.view;
        expectedAt = -Infinity;
    });
    // Vue renders before the browser does: the new layout comes with the new width.
    window.addEventListener('resize', measure);
    watch(
        () => preferences.textSize,
        () => void tellWidths().then(measure),
        { flush: 'post' },
    );
    onMounted(() => {
        measure();
        void start();
    });
    onBeforeUnmount(() => {
        stop();
        window.removeEventListener('resize', measure);
    });
    return { layout, view, isExpected, expect };
}
