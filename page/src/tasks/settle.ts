import type { Outcome } from '@/client';

interface Settling<Value> {
    /** Whether a reading shows what the repair is for. */
    reached: (value: Value) => boolean;
    /** Receives each reading. */
    show: (value: Value) => void;
    /** Milliseconds between two readings. */
    interval: number;
    /** After so many equal readings no more change is expected. */
    stillReadings: number;
    /** After so many readings the last one decides. */
    mostReadings: number;
    wait?: (milliseconds: number) => Promise<void>;
}

const pause = (milliseconds: number): Promise<void> =>
    new Promise((resolve) => setTimeout(resolve, milliseconds));

/**
 * Reads until a repair that continues after its answer has settled; the outcome is whether it
 * worked. That must be seen twice, because a repair may first remove and then restore.
 */
export async function readUntilSettled<Value>(
    read: () => Promise<Outcome<Value>>,
    settling: Settling<Value>,
): Promise<Outcome<boolean>> {
    const { reached, show, interval, stillReadings, mostReadings, wait = pause } = settling;
    let last = '';
    let equal = 0;
    let good = false;
    for (let readings = 0; readings < mostReadings; readings += 1) {
        await wait(interval);
        const outcome = await read();
        if (outcome.kind !== 'done') return outcome;
        show(outcome.value);
        const now = JSON.stringify(outcome.value);
        equal = now === last ? equal + 1 : 1;
        last = now;
        good = reached(outcome.value);
        if (equal >= (good ? 2 : stillReadings)) break;
    }
    return { kind: 'done', value: good };
}
