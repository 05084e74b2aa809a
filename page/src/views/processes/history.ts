import type { MachineMemory, MachineReading, Process } from '@/client';

/** What a curve shows, in per cent. "waited" is how long something had to wait for the machine. */
export type Curve = 'processor' | 'used' | 'swap' | 'waited' | 'largest';

/** The machine at one moment. */
export interface Sample {
    /** In milliseconds. */
    time: number;
    /** What is not known of that moment is left out. */
    values: Partial<Record<Curve, number>>;
}

/** An hour of samples that are five seconds apart. */
export const historyLength = 720;

const minute = 60_000;

/** The sample that two answers make; null when the machine did not tell its memory. */
export function sample(
    time: number,
    { usedPercent }: MachineMemory,
    largest: Process[],
): Sample | null {
    if (usedPercent === null) return null;
    // Shared pages count for every process that has them, so that the sum can pass the whole.
    const sum = largest.reduce((total, { memory }) => total + memory, 0);
    return { time, values: { used: usedPercent, largest: Math.min(sum, 100) } };
}

function percent(part: number | null, whole: number | null): number | null {
    return part === null || !whole ? null : Math.min(100, (part * 100) / whole);
}

function known(values: Record<string, number | null | undefined>): Sample['values'] {
    return Object.fromEntries(Object.entries(values).filter(([, value]) => value != null));
}

/** The kernel's average of one of three spans, of what had to be waited for longest. */
function longestWait({ pressure }: MachineReading, span: number): number | undefined {
    const waits = Object.values(pressure).flatMap((averages) => averages[span] ?? []);
    return waits.length ? Math.max(...waits) : undefined;
}

/** A reading as a sample. `processor` is the per cent of all processors since the last one. */
export function sampleOf(time: number, reading: MachineReading, processor: number | null): Sample {
    const { total, available, swapTotal, swapFree } = reading.memory;
    const taken = (whole: number | null, free: number | null) =>
        whole === null || free === null ? null : whole - free;
    return {
        time,
        values: known({
            processor,
            used: percent(taken(total, available), total),
            swap: percent(taken(swapTotal, swapFree), swapTotal),
            waited: longestWait(reading, 0),
        }),
    };
}

/** What the kernel's averages tell of the time before the first reading. */
export function beforeFirst(time: number, reading: MachineReading): Sample[] {
    const [minuteLoad, fiveMinutes, quarter] = reading.load.map((load) =>
        percent(load, reading.processors),
    );
    return [
        { time: time - 15 * minute, values: known({ processor: quarter }) },
        {
            time: time - 5 * minute,
            values: known({ processor: fiveMinutes, waited: longestWait(reading, 2) }),
        },
        {
            time: time - minute,
            values: known({ processor: minuteLoad, waited: longestWait(reading, 1) }),
        },
    ];
}

export function withSample(history: readonly Sample[], added: Sample): Sample[] {
    return [...history, added].slice(-historyLength);
}

/** The columns that a chart draws, times in seconds; null where nothing is known. */
export function chartColumns(
    history: readonly Sample[],
    curve: Curve,
): [number[], (number | null)[]] {
    return [
        history.map(({ time }) => time / 1000),
        history.map(({ values }) => values[curve] ?? null),
    ];
}

/** The ends of the axis of time, in seconds: a single sample is not a whole day. */
export function timeSpan(history: readonly Sample[]): [number, number] {
    const last = (history[history.length - 1]?.time ?? 0) / 1000;
    const first = (history[0]?.time ?? 0) / 1000;
    return [Math.min(first, last - 60), last];
}

/** The upper end of an axis on which the largest value can be seen. */
export function axisEnd(history: readonly Sample[], curve: Curve): number {
    const largest = Math.max(0, ...history.map(({ values }) => values[curve] ?? 0));
    return [5, 10, 25, 50].find((end) => largest <= end * 0.9) ?? 100;
}
