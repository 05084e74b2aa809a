import { setTimeout as pause } from 'node:timers/promises';

/** Polls condition until it gives something truthy, and returns that; throws after timeoutMs. */
export async function waitFor(condition, { timeoutMs = 60_000, what = 'the condition' } = {}) {
    const end = Date.now() + timeoutMs;
    for (;;) {
        const value = await condition();
        if (value) return value;
        if (Date.now() >= end) throw new Error(`${what} did not come true in ${timeoutMs} ms`);
        await pause(20);
    }
}
