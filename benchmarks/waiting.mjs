// Waiting for what another program does.

import { setTimeout as pause } from 'node:timers/promises';

const longestWaitMs = 60_000;

/** Looks every so many milliseconds whether the condition holds, and throws when it never does. */
export async function waitUntil(condition, what, everyMs) {
    const end = Date.now() + longestWaitMs;
    while (!condition()) {
        if (Date.now() > end) throw new Error(`waited in vain for ${what}`);
        await pause(everyMs);
    }
}
