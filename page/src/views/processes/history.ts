import type { MachineMemory, Process } from '@/client';

/** The memory at one moment, both figures in per cent of the machine's. */
export interface Sample {
    /** In milliseconds. */
    time: number;
    used: number;
    /** The ten largest processes together. */
    largest: number;
}

/** An hour of samples that are five seconds apart. */
export const historyLength = 720;

/** The sample that two answers make; null when the machine did not tell its memory. */
export function sample(
    time: number,
    { usedPercent }: MachineMemory,
    largest: Process[],
): Sample | null {
    if (usedPercent === null) return null;
    // Shared pages count for every process that has them, so that the sum can pass the whole.
    const sum = largest.reduce((total, { memory }) => total + memory, 0);
    return { time, used: usedPercent, largest: Math.min(sum, 100) };
}

export function withSample(history: readonly Sample[], added: Sample): Sample[] {
    return [...history, added].slice(-historyLength);
}

/** The columns that the chart draws, times in seconds. */
export function chartColumns(history: readonly Sample[]): [number[], number[], number[]] {
    return [
        history.map(({ time }) => time / 1000),
        history.map(({ used }) => used),
        history.map(({ largest }) => largest),
    ];
}
