import type { SearchHit } from '@/client';
import { matcher } from '@/tasks/filter';
import { sortInto, type Compare, type SlicedSort } from './slicedsort';
import { SortKeys } from './sortkeys';

/** What a hit's look tells, once it was read. */
export type Figure = 'size' | 'changed';
export type Order = 'found' | 'name' | 'folder' | Figure;

export const isFigure = (order: Order): order is Figure => order === 'size' || order === 'changed';

/** Hits that are tested for the filter between two looks at the clock. */
const testsAtOnce = 200;

/** New hits are sorted in once they are this part of the sorted ones: then it pays. */
const worthSorting = 1 / 8;
/** Milliseconds after which they are sorted in although they are fewer. */
const longestWait = 500;

/**
 * All hits of a search, and those that are shown in their order. Filtering and sorting are done
 * bit by bit in work(), so that any number of hits leaves the page responsive.
 */
export class HitList {
    private hits: SearchHit[] = [];
    private matches: (...texts: string[]) => boolean = matcher('');
    private order: Order = 'found';
    private isDescending = false;
    private readonly collator: Intl.Collator;
    private readonly sortKeys: SortKeys;
    /** The keys of the hits' texts that decide the order, as far as they were needed. */
    private keys: string[] = [];
    /** Numbers of the hits that match, as they were found, of the first `tested` ones. */
    private matched: number[] = [];
    private tested = 0;
    /** The first `sortedCount` of the matched ones, in order. */
    private sorted: number[] = [];
    private sortedCount = 0;
    private sorting: SlicedSort | null = null;
    private sortedAt = -Infinity;
    /** What is shown: until a sort is done, the order from before it. */
    private shown = this.matched;

    /** Whether more hits are on their way, so that sorting can wait for some more. */
    expectsMore = false;

    constructor(
        language: string,
        /** A figure of the hit with a number; undefined where it has none. */
        private readonly figureOf: (number: number, figure: Figure) => number | undefined = () =>
            undefined,
    ) {
        this.collator = new Intl.Collator(language, { numeric: true });
        this.sortKeys = new SortKeys(language);
    }

    get count(): number {
        return this.hits.length;
    }

    get shownCount(): number {
        return this.shown.length;
    }

    get isBusy(): boolean {
        return (
            this.hasUntested || (this.order !== 'found' && this.sortedCount < this.matched.length)
        );
    }

    hit(number: number): SearchHit | undefined {
        return this.hits[number];
    }

    /** The number of the hit at a position of the shown ones. */
    numberAt(position: number): number | undefined {
        return this.shown[position];
    }

    /** The position of a hit among the shown ones; -1 when it is not shown. */
    positionOf(number: number): number {
        return this.shown.indexOf(number);
    }

    clear(): void {
        this.hits = [];
        this.keys = [];
        this.restart();
    }

    add(hit: SearchHit): void {
        this.hits.push(hit);
    }

    filterBy(query: string): void {
        this.matches = matcher(query);
        this.restart();
    }

    orderBy(order: Order, isDescending = false): void {
        if (order === this.order && isDescending === this.isDescending) return;
        if (order !== this.order) this.keys = [];
        this.order = order;
        this.isDescending = isDescending;
        this.sortAgain();
    }

    /** For figures that have become known. */
    sortAgain(): void {
        this.unsort();
        if (this.order === 'found') this.shown = this.matched;
    }

    /** Works for about so many milliseconds; answers whether anything changed. */
    work(milliseconds: number, now: () => number = () => performance.now()): boolean {
        let time = now();
        const end = time + milliseconds;
        let changed = false;
        while (this.isBusy && (this.hasUntested || this.sorting || this.sortsNow(time))) {
            changed = this.step(time) || changed;
            time = now();
            if (time >= end) break;
        }
        return changed;
    }

    private get hasUntested(): boolean {
        return this.tested < this.hits.length;
    }

    private sortsNow(time: number): boolean {
        const added = this.matched.length - this.sortedCount;
        return (
            !this.expectsMore ||
            added >= this.sortedCount * worthSorting ||
            time - this.sortedAt >= longestWait
        );
    }

    private step(time: number): boolean {
        if (this.hasUntested && !this.sorting) {
            const end = Math.min(this.tested + testsAtOnce, this.hits.length);
            for (; this.tested < end; this.tested += 1) {
                const { name, directory } = this.hits[this.tested]!;
                if (this.matches(name, directory)) this.matched.push(this.tested);
            }
            return true;
        }
        this.sorting ??= this.sort(this.matched.slice(this.sortedCount));
        const { done, value } = this.sorting.next();
        if (!done) return false;
        this.sorting = null;
        this.sorted = value;
        this.sortedCount = value.length;
        this.sortedAt = time;
        this.shown = value;
        return true;
    }

    private *sort(added: number[]): SlicedSort {
        const { hits, order, sorted, sortKeys } = this;
        if (isFigure(order)) return yield* sortInto(sorted, added, this.byFigure(order));
        const side = order === 'folder' ? 'directory' : 'name';
        const isNew = yield* sortKeys.learn(added.map((number) => hits[number]![side]));
        if (isNew) this.keys = [];
        return yield* sortInto(sorted, added, this.byText(side));
    }

    private byFigure(figure: Figure): Compare {
        const { figureOf } = this;
        const sign = this.isDescending ? -1 : 1;
        return (first, second) => {
            const [one, other] = [figureOf(first, figure), figureOf(second, figure)];
            // What is not known comes last, whatever the direction.
            if (one === undefined || other === undefined) {
                return Number(one === undefined) - Number(other === undefined);
            }
            return sign * (one - other);
        };
    }

    private byText(side: 'directory' | 'name'): Compare {
        const { hits, collator, keys, sortKeys } = this;
        const sign = this.isDescending ? -1 : 1;
        const keyOf = (number: number): string =>
            (keys[number] ??= sortKeys.key(hits[number]![side]));
        return (first, second) => {
            const one = keyOf(first);
            const other = keyOf(second);
            if (one && other && one !== other) return one < other ? -sign : sign;
            return sign * collator.compare(hits[first]![side], hits[second]![side]);
        };
    }

    private restart(): void {
        this.matched = [];
        this.tested = 0;
        this.unsort();
        this.shown = this.matched;
    }

    private unsort(): void {
        this.sorted = [];
        this.sortedCount = 0;
        this.sorting = null;
        this.sortedAt = -Infinity;
    }
}
