import type { Browser, Page } from 'playwright-core';

export interface FrameWork {
    frames: number;
    /** Milliseconds that the main thread worked for the longest frame, without waiting. */
    longest: number;
}

interface TraceEvent {
    name: string;
    pid: number;
    tid: number;
    ts: number;
    /** Microseconds of the thread's own work. */
    tdur?: number;
}

const mark = 'frame-work';

/**
 * What the page's main thread does for each frame while `act` runs. It is the thread's own time
 * that counts, so that other work on the machine does not.
 */
export async function frameWork(
    browser: Browser, page: Page, act: () => Promise<void>,
): Promise<FrameWork> {
    await browser.startTracing(page, {
        categories: ['-*', 'toplevel', 'devtools.timeline', 'blink.user_timing'],
    });
    await page.evaluate((name) => performance.mark(name), mark);
    await act();
    const trace = (await browser.stopTracing()).toString();
    const { traceEvents } = JSON.parse(trace) as { traceEvents: TraceEvent[] };
    const start = traceEvents.find(({ name }) => name === mark);
    if (!start) throw new Error('the page left no mark in the trace');
    const own = traceEvents
        .filter(({ pid, tid, ts }) => pid === start.pid && tid === start.tid && ts >= start.ts)
        .sort((first, second) => first.ts - second.ts);
    const frames: number[] = [];
    let work = 0;
    for (const { name, tdur = 0 } of own) {
        if (name === 'FireAnimationFrame') {
            frames.push(work);
            work = 0;
        } else if (name.endsWith('RunTask')) {
            work += tdur / 1000;
        }
    }
    frames.push(work);
    return { frames: frames.length, longest: Math.max(...frames) };
}
