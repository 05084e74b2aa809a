// Starts programs that show a page and drives that page through the developer tools.

import { end, freePort, Page, start } from 'browser-driver';

/** Connects to the local page whose address is wanted, once its document is complete. */
export function pageOf(port, isWanted = (url) => url !== '') {
    return Page.attach(port, (url) => url.startsWith('file:') && isWanted(url), {
        timeoutMs: 30_000,
    });
}

const isShown = (url) => !url.endsWith('/waiting.html');

/** Starts a program with developer tools, lets `use` work with its visible page and ends it. */
export async function withPage(startOn, use) {
    const port = await freePort();
    const startedAt = Date.now();
    const child = startOn(port);
    try {
        const page = await pageOf(port, isShown);
        try {
            return await use(page, { pid: child.pid, port, startedAt });
        } finally {
            await page.close();
        }
    } finally {
        await end(child);
    }
}

/**
 * Start the window program, or a bare view of the same Chromium that shows a file; `hidden` has at
 * most one for a second view, which is not shown.
 */
export const shellOn =
    (shell, { env, args = [] }) =>
    (port) =>
        start(shell, ['--debug-port', String(port), ...args], { stdio: 'ignore', env });
export const bareViewOn =
    (bareView, file, { env, hidden = [] }) =>
    (port) =>
        start(bareView, [String(port), file, ...hidden], { stdio: 'ignore', env });

/** When the page was first painted, in milliseconds since 1970. */
export const firstPaint = `new Promise((resolve) => {
    const report = () => {
        const paint = performance.getEntriesByName('first-paint')[0];
        if (paint) resolve(performance.timeOrigin + paint.startTime);
        else setTimeout(report, 10);
    };
    report();
})`;
