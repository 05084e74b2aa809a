import { describe, expect, it } from 'vitest';
import type { Outcome } from '@/client';
import { readUntilSettled } from '@/tasks/settle';

/** Reads these values one after the other, the last one again and again. */
async function settleOn(values: (number | Outcome<number>)[], stillReadings = 3, most = 10) {
    const shown: number[] = [];
    let readings = 0;
    const outcome = await readUntilSettled(
        async () => {
            const value = values[Math.min(readings, values.length - 1)]!;
            readings += 1;
            return typeof value === 'number' ? ({ kind: 'done', value } as const) : value;
        },
        {
            reached: (value) => value === 3,
            show: (value) => shown.push(value),
            interval: 5,
            stillReadings,
            mostReadings: most,
            wait: async () => undefined,
        },
    );
    return { outcome, shown };
}

describe('reading until a repair has settled', () => {
    it('wants to see the effect twice', async () => {
        expect(await settleOn([0, 3, 1, 3, 3, 9])).toEqual({
            outcome: { kind: 'done', value: true },
            shown: [0, 3, 1, 3, 3],
        });
    });

    it('ends without the effect when nothing changes any more', async () => {
        expect(await settleOn([1, 2, 2])).toEqual({
            outcome: { kind: 'done', value: false },
            shown: [1, 2, 2, 2],
        });
    });

    it('is bounded when the readings never rest', async () => {
        const { outcome, shown } = await settleOn([1, 2, 1, 2, 1, 2], 3, 4);
        expect(outcome).toEqual({ kind: 'done', value: false });
        expect(shown).toHaveLength(4);
    });

    it('tells that a reading failed', async () => {
        expect(await settleOn([1, { kind: 'failed' }, 3])).toEqual({
            outcome: { kind: 'failed' },
            shown: [1],
        });
    });
});
