import { onBeforeUnmount, ref, shallowRef, watch } from 'vue';
import type { Client, Failure } from '@/client';
import { useTexts } from '@/frame/texts';
import { useNotice } from '@/tasks/notice';
import { progressDelay } from '@/tasks/task';
import { useHitLooks } from './hitlooks';
import { HitList, isFigure, type Figure, type Order } from './hitlist';

type SearchState = 'idle' | 'searching' | 'finished' | 'stopped';

/** What of a frame goes into filtering and sorting, in milliseconds. */
const frameShare = 8;
/** Milliseconds between two looks at the hits while they stream in: nobody reads faster. */
const publishInterval = 100;

/** A search and its hits, which are taken in once a frame however many arrive. */
export function useSearch(client: Client) {
    const { locale } = useTexts();
    const figureOf = (number: number, figure: Figure): number | undefined => {
        const look = looks.look(number);
        return (figure === 'size' ? look?.size : look?.changed?.getTime()) ?? undefined;
    };
    const list = new HitList(locale.value, figureOf);
    const looks = useHitLooks(client, list);
    /** Counts the changes of the list, which is not reactive itself. */
    const version = ref(0);
    const state = ref<SearchState>('idle');
    const count = ref(0);
    const shownCount = ref(0);
    const arranging = ref(false);
    const slow = ref(false);
    const failure = shallowRef<Failure | null>(null);
    const filter = ref('');
    const order = ref<Order>('found');
    const isDescending = ref(false);
    /** All sizes and times are being read, because they decide the order. */
    const measuring = ref(false);
    /** Until the host has taken a search, whatever arrives belongs to the one before. */
    let accepting = false;
    /** The host has found all, of which some may still wait to be taken in. */
    let allArrived = false;
    let started = 0;
    let frame = 0;
    let publishedAt = 0;
    let slowTimer: ReturnType<typeof setTimeout> | undefined;

    function publish(): void {
        publishedAt = performance.now();
        count.value = list.count;
        shownCount.value = list.shownCount;
        arranging.value = list.isBusy;
        version.value += 1;
    }

    function draw(): void {
        frame = 0;
        list.expectsMore = accepting;
        list.work(frameShare);
        const isNews =
            !accepting || !count.value || performance.now() - publishedAt >= publishInterval;
        if (isNews) publish();
        if (list.isBusy || !isNews) {
            requestDraw();
        } else if (allArrived && state.value === 'searching') {
            end('finished');
            void arrange();
        }
    }

    function requestDraw(): void {
        if (!frame) frame = requestAnimationFrame(draw);
    }

    function end(how: SearchState): void {
        accepting = false;
        allArrived = false;
        state.value = how;
        clearTimeout(slowTimer);
        slow.value = false;
    }

    async function start(wanted: string): Promise<void> {
        started += 1;
        const mine = started;
        end('searching');
        failure.value = null;
        list.clear();
        looks.forget();
        requestDraw();
        slowTimer = setTimeout(() => {
            slow.value = true;
        }, progressDelay);
        const outcome = await client.startSearch(wanted);
        if (mine !== started || state.value !== 'searching') return;
        if (outcome.kind === 'done') {
            accepting = true;
        } else {
            end('idle');
            failure.value = outcome;
        }
    }

    async function stop(): Promise<void> {
        if (state.value !== 'searching') return;
        end('stopped');
        const outcome = await client.startSearch('');
        if (outcome.kind !== 'done') failure.value = outcome;
    }

    /** Sorts; by what only the disk knows once all of it was read. */
    async function arrange(): Promise<void> {
        if (isFigure(order.value)) {
            measuring.value = true;
            await looks.wantAll();
            measuring.value = false;
            list.sortAgain();
        }
        list.orderBy(order.value, isDescending.value);
        requestDraw();
    }

    watch(filter, (query) => {
        list.filterBy(query);
        requestDraw();
    });
    watch([order, isDescending], arrange);
    useNotice(client, 'searchHit', (hit) => {
        if (!accepting) return;
        list.add(hit);
        requestDraw();
    });
    useNotice(client, 'searchFinished', () => {
        if (!accepting) return;
        accepting = false;
        allArrived = true;
        requestDraw();
    });
    onBeforeUnmount(() => {
        clearTimeout(slowTimer);
        cancelAnimationFrame(frame);
    });
    return {
        list,
        version,
        state,
        count,
        shownCount,
        arranging,
        slow,
        failure,
        filter,
        order,
        isDescending,
        measuring,
        looks,
        start,
        stop,
    };
}
