import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { Process } from '@/client';
import {
    chartColumns,
    historyLength,
    sample,
    withSample,
    type Sample,
} from '@/views/processes/history';
import { freeGibibytes, judgeMemory } from '@/views/processes/memory';
import { createRefresher } from '@/views/processes/refresher';
import { loadText, rawLoad } from '@/views/processes/report';

const process = (memory: number, command = 'vyr'): Process => ({
    id: 1,
    user: 'user',
    memory,
    processor: 2,
    command,
});
const memory = { usedPercent: 40, totalGibibytes: 8 };

describe('the memory', () => {
    it.each([
        [0, 'good'],
        [79.9, 'good'],
        [80, 'warning'],
        [89.9, 'warning'],
        [90, 'bad'],
        [100, 'bad'],
        [null, 'plain'],
    ] as const)('at %s per cent is judged %s', (used, state) => {
        expect(judgeMemory({ usedPercent: used, totalGibibytes: 8 })).toBe(state);
    });

    it('is judged by the doctor where there is one', () => {
        expect(judgeMemory(memory, { findings: [], skipped: false })).toBe('good');
        const finding = { number: 1, check: 'memory.full', text: '', where: [], repairs: [] };
        const full = { findings: [{ ...finding, state: 'bad' as const }], skipped: false };
        expect(judgeMemory(memory, full)).toBe('bad');
    });

    it('tells what is free of it, if it tells anything', () => {
        expect(freeGibibytes(memory)).toBeCloseTo(4.8);
        expect(freeGibibytes({ usedPercent: null, totalGibibytes: 8 })).toBeNull();
    });
});

describe('the history', () => {
    it('holds the sum of the largest processes, which shared pages never take past the whole', () => {
        expect(sample(5, memory, [process(30), process(12.5)])).toEqual({
            time: 5,
            used: 40,
            largest: 42.5,
        });
        expect(sample(5, memory, [process(70), process(60)])?.largest).toBe(100);
    });

    it('leaves out a moment that the machine tells nothing about', () => {
        expect(sample(5, { usedPercent: null, totalGibibytes: null }, [])).toBeNull();
    });

    it('forgets the oldest samples', () => {
        let history: Sample[] = [];
        for (let time = 0; time < historyLength + 3; time += 1) {
            history = withSample(history, { time, used: 1, largest: 1 });
        }
        expect(history).toHaveLength(historyLength);
        expect(history[0]!.time).toBe(3);
    });

    it('is drawn in seconds', () => {
        expect(chartColumns([{ time: 1500, used: 2, largest: 3 }])).toEqual([[1.5], [2], [3]]);
    });
});

describe('refreshing', () => {
    let hidden = false;
    beforeEach(() => {
        hidden = false;
        vi.useFakeTimers();
        vi.stubGlobal('document', {
            get hidden() {
                return hidden;
            },
        });
    });
    afterEach(() => {
        vi.useRealTimers();
        vi.unstubAllGlobals();
    });

    function refresher() {
        const work = vi.fn(() => Promise.resolve());
        return { work, ...createRefresher(work, 5000) };
    }

    it('goes on by itself', async () => {
        const { work, refresh } = refresher();
        await refresh();
        await vi.advanceTimersByTimeAsync(10_000);
        expect(work).toHaveBeenCalledTimes(3);
    });

    it('rests while it is paused', async () => {
        const { work, refresh, togglePause } = refresher();
        await refresh();
        togglePause();
        await vi.advanceTimersByTimeAsync(60_000);
        expect(work).toHaveBeenCalledTimes(1);
        togglePause();
        await vi.advanceTimersByTimeAsync(5000);
        expect(work).toHaveBeenCalledTimes(2);
    });

    it('rests while the page is hidden', async () => {
        const { work, refresh, visibilityChanged } = refresher();
        await refresh();
        hidden = true;
        visibilityChanged();
        await vi.advanceTimersByTimeAsync(60_000);
        expect(work).toHaveBeenCalledTimes(1);
        hidden = false;
        visibilityChanged();
        await vi.advanceTimersByTimeAsync(5000);
        expect(work).toHaveBeenCalledTimes(2);
    });

    it('never runs twice at a time', async () => {
        let finish: () => void = () => undefined;
        const work = vi.fn(
            () =>
                new Promise<void>((resolve) => {
                    finish = resolve;
                }),
        );
        const { refresh } = createRefresher(work, 5000);
        const first = refresh();
        await refresh();
        await vi.advanceTimersByTimeAsync(60_000);
        expect(work).toHaveBeenCalledTimes(1);
        finish();
        await first;
    });

    it('ends with its view', async () => {
        const { work, refresh, stop } = refresher();
        await refresh();
        stop();
        await vi.advanceTimersByTimeAsync(60_000);
        expect(work).toHaveBeenCalledTimes(1);
    });
});

describe('the copied load', () => {
    const load = { memory, busiest: [process(1, 'evil\u202Ename')], largest: [] };
    const t = (key: string): string => key;

    it('names what would not show', () => {
        expect(loadText(load, t)).toContain('evil⟨U+202E⟩name');
    });

    it('is complete as raw data', () => {
        expect(JSON.parse(rawLoad(load))).toEqual(load);
    });
});
