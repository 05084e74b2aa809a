import { setTimeout as pause } from 'node:timers/promises';

/**
 * Polls a condition until it gives something truthy, and returns that; throws after timeoutMs.
 * @template T
 * @param {() => T} condition
 * @param {{ timeoutMs?: number, what?: string, everyMs?: number }} [options]
 * @returns {Promise<NonNullable<Awaited<T>>>}
 */
export async function waitFor(
    condition,
    { timeoutMs = 60_000, what = 'the condition', everyMs = 20 } = {},
) {
    const end = Date.now() + timeoutMs;
    for (;;) {
        const value = await condition();
        if (value) return value;
        if (Date.now() >= end) throw new Error(`${what} did not come true in ${timeoutMs} ms`);
        await pause(everyMs);
    }
}

/** The value of a promise; throws when it takes longer than that. */
export async function within(milliseconds, promise, what) {
    let timer;
    const tooLate = new Promise((_, reject) => {
        timer = setTimeout(() => reject(new Error(`no answer to ${what}`)), milliseconds);
    });
    try {
        return await Promise.race([promise, tooLate]);
    } finally {
        clearTimeout(timer);
    }
}
