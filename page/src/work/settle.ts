import type { Outcome } from '@/client';

export interface Settling<Value> {
    /** Whether a reading shows what the repair is for. */
    reached: (value: Value) => boolean;
    /** Gets each reading as it comes. */
    show: (value: Value) => void;
    /** Milliseconds between two readings. */
    interval: number;
    /** After so many equal readings nothing more is expected. */
    stillReadings: number;
    /** After so many readings the last one counts, whatever it says. */
    mostReadings: number;
    wait?: (milliseconds: number) => Promise<void>;
}

export const pause = (milliseconds: number): Promise<void> =>
    new Promise((resolve) => setTimeout(resolve, milliseconds));

/**
 * Reads until a repair that runs on after its answer has come to rest; answers whether it then
 * had its effect. What it wanted has to be seen twice, because a repair may remove first and put
 * back after.
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
