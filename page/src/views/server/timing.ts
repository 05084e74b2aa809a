import type { Step, TimedAnswer } from '@/client';

interface Part {
    step: Step;
    /** In milliseconds. */
    start: number;
    length: number;
}

const order: readonly Step[] = ['name', 'connect', 'encrypt', 'firstByte', 'whole'];

/** What each step took of the whole; one that was not needed is left out. */
export function timeParts({ times }: Pick<TimedAnswer, 'times'>): Part[] {
    const parts: Part[] = [];
    let start = 0;
    for (const step of order) {
        const end = times[step];
        if (end <= 0) continue;
        parts.push({ step, start, length: Math.max(0, end - start) });
        start = Math.max(start, end);
    }
    return parts;
}
