import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { ListedProcess, MachineReading, Process } from '@/client';
import {
    axisEnd,
    beforeFirst,
    chartColumns,
    historyLength,
    sample,
    sampleOf,
    timeSpan,
    withSample,
    type Sample,
} from '@/views/processes/history';
import { freeGibibytes, judgeMemory } from '@/views/processes/memory';
import {
    matchingRows,
    programRows,
    shownProcesses,
    sortedRows,
    wholeProcessor,
} from '@/views/processes/programs';
import { createRefresher } from '@/views/processes/refresher';
import { loadText, programsText, rawLoad } from '@/views/processes/report';

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
            values: { used: 40, largest: 42.5 },
        });
        expect(sample(5, memory, [process(70), process(60)])?.values.largest).toBe(100);
    });

    it('leaves out a moment that the machine tells nothing about', () => {
        expect(sample(5, { usedPercent: null, totalGibibytes: null }, [])).toBeNull();
    });

    it('forgets the oldest samples', () => {
        let history: Sample[] = [];
        for (let time = 0; time < historyLength + 3; time += 1) {
            history = withSample(history, { time, values: { used: 1 } });
        }
        expect(history).toHaveLength(historyLength);
        expect(history[0]!.time).toBe(3);
    });

    it('is drawn in seconds', () => {
        const history = [{ time: 1500, values: { used: 2 } }];
        expect(chartColumns(history, 'used')).toEqual([[1.5], [2]]);
        expect(chartColumns(history, 'swap')).toEqual([[1.5], [null]]);
    });

    it('begins a minute before its only sample, or with its first', () => {
        const at = (time: number): Sample => ({ time, values: {} });
        expect(timeSpan([at(120_000)])).toEqual([60, 120]);
        expect(timeSpan([at(0), at(900_000), at(905_000)])).toEqual([0, 905]);
    });
});

const listed = (id: number, program: string, processorTime = 0, memory = 0): ListedProcess => ({
    id,
    start: '7',
    user: 'user',
    isOwn: true,
    program,
    command: `/usr/bin/${program} --number=${id}`,
    memory,
    processorTime,
});
const reading = (processes: ListedProcess[]): MachineReading => ({
    processes,
    memory: { total: 1000, available: 400, swapTotal: 0, swapFree: 0 },
    load: [1, 4, 0.5],
    pressure: { cpu: [1, 2, 3], memory: [], io: [9, 0, 0] },
    processors: 2,
});

describe('all processes', () => {
    const before = { time: 0, reading: reading([listed(1, 'vyr', 100), listed(2, 'tbl', 0)]) };
    const now = {
        time: 1000,
        reading: reading([listed(1, 'vyr', 600, 5), listed(3, 'vyr', 50, 7), listed(4, 'tbl')]),
    };

    it('tell what they used since the last reading', () => {
        const shown = shownProcesses(before, now);
        expect(shown.map(({ processor }) => processor)).toEqual([50, null, null]);
        expect(wholeProcessor(shown, 2)).toBe(25);
        expect(wholeProcessor(shownProcesses(null, now), 2)).toBeNull();
    });

    it('do not take over the time of an earlier process of the same number', () => {
        const again = { time: 1000, reading: reading([{ ...listed(1, 'vyr', 5), start: '8' }]) };
        expect(shownProcesses(before, again)[0]!.processor).toBeNull();
    });

    const looks = new Map([['tbl', { title: 'Accounts', icon: '' }]]);
    const rows = programRows(shownProcesses(before, now), looks);

    it('are one row for each program, named as on the desktop', () => {
        expect(
            rows.map(({ title, memory, processes }) => [title, memory, processes.length]),
        ).toEqual([
            ['vyr', 12, 2],
            ['Accounts', 0, 1],
        ]);
        expect(rows[0]!.processes[0]!.id).toBe(3);
    });

    it.each([
        ['title', false, ['Accounts', 'vyr']],
        ['memory', true, ['vyr', 'Accounts']],
        ['processor', false, ['Accounts', 'vyr']],
    ] as const)('are sorted by %s', (column, descending, titles) => {
        const sorted = sortedRows(rows, { column, descending });
        expect(sorted.map(({ title }) => title)).toEqual(titles);
    });

    it.each([
        ['acc', [4]],
        ['vyr', [3, 1]],
        ['vyr number=1', [1]],
        ['4', [4]],
        ['nothing', []],
    ])('are found by %s', (filter, ids) => {
        const found = matchingRows(rows, filter).flatMap(({ processes }) => processes);
        expect(found.map(({ id }) => id)).toEqual(ids);
    });

    it('are copied with name and program', () => {
        const t = (key: string): string => key;
        const number = (value: number, digits: number): string => value.toFixed(digits);
        expect(programsText(rows, t, number).split('\n')[2]).toBe('Accounts (tbl)\t1\t\t0.0\tuser');
    });
});

describe('a reading as a sample', () => {
    it('has what is known', () => {
        expect(sampleOf(5, reading([]), 30)).toEqual({
            time: 5,
            values: { processor: 30, used: 60, waited: 9 },
        });
    });

    it("begins with the kernel's averages", () => {
        const before = beforeFirst(900_000, reading([]));
        expect(before.map(({ time }) => time)).toEqual([0, 600_000, 840_000]);
        expect(before.map(({ values }) => values.processor)).toEqual([25, 100, 50]);
        expect(before.map(({ values }) => values.waited)).toEqual([undefined, 3, 2]);
    });

    it.each([
        [0, 5],
        [2, 5],
        [9, 10],
        [9.5, 25],
        [40, 50],
        [90, 100],
    ])('of %s per cent is drawn on an axis up to %s', (used, end) => {
        expect(axisEnd([{ time: 0, values: { used, swap: 99 } }], 'used')).toBe(end);
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
    const number = (value: number, digits: number): string => value.toFixed(digits);
    const t = (key: string): string => key;

    it('names what would not show', () => {
        expect(loadText(load, t, number)).toContain('evil⟨U+202E⟩name');
    });

    it('is complete as raw data', () => {
        expect(JSON.parse(rawLoad(load))).toEqual(load);
    });
});
