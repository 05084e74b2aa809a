// Programs that show a page, and that page by its developer tools.

import { end, freePort, Page, start } from 'browser-driver';

/** Connects to the page of a file, once its document is there; isWanted tells it by its address. */
export function pageOf(port, isWanted = () => true) {
    return Page.attach(port, (url) => url.startsWith('file:') && isWanted(url), {
        timeoutMs: 30_000,
    });
}

/** Starts a program with developer tools, lets `use` work with its page and ends it. */
export async function withPage(startOn, use) {
    const port = await freePort();
    const startedAt = Date.now();
    const child = startOn(port);
    try {
        const page = await pageOf(port);
        try {
            return await use(page, { pid: child.pid, port, startedAt });
        } finally {
            await page.close();
        }
    } finally {
        await end(child);
    }
}

/** How the window program starts, and how a bare view of the same Chromium shows a file. */
export const shellOn =
    (shell, { env, args = [] }) =>
    (port) =>
        start(shell, ['--debug-port', String(port), ...args], { stdio: 'ignore', env });
export const bareViewOn =
    (bareView, file, { env }) =>
    (port) =>
        start(bareView, [String(port), file], { stdio: 'ignore', env });

/** When the page was first painted, in milliseconds since 1970. */
export const firstPaint = `new Promise((resolve) => {
    const report = () => {
        const paint = performance.getEntriesByName('first-paint')[0];
        if (paint) resolve(performance.timeOrigin + paint.startTime);
        else setTimeout(report, 10);
    };
    report();
})`;
