// Programs that show a page, and that page by its developer tools.

import CDP from 'chrome-remote-interface';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { createServer } from 'node:net';

async function freePort() {
    const server = createServer().listen(0, '127.0.0.1');
    await once(server, 'listening');
    const { port } = server.address();
    server.close();
    await once(server, 'close');
    return port;
}

/** The value of an expression in the page, waited for if it is a promise. */
export async function evaluate(client, expression) {
    const answer = await client.Runtime.evaluate({
        expression,
        awaitPromise: true,
        returnByValue: true,
    });
    if (answer.exceptionDetails) throw new Error(JSON.stringify(answer.exceptionDetails));
    return answer.result.value;
}

/** The tools name a page that is on its way before its document is there. */
async function isThere(client, wanted) {
    try {
        const address = await evaluate(
            client,
            "document.readyState === 'complete' && location.href",
        );
        return address && address.startsWith('file:') && wanted(address);
    } catch {
        return false; // on its way from the page before
    }
}

/** Connects to the page whose address is wanted, once its document is there. */
export async function pageOf(port, wanted = () => true) {
    const deadline = Date.now() + 30000;
    let client;
    while (Date.now() < deadline) {
        // Nothing listens at first.
        const targets = client ? [] : await CDP.List({ port }).catch(() => []);
        const target = targets.find(
            ({ type, url }) => type === 'page' && url.startsWith('file:') && wanted(url),
        );
        if (target) client = await CDP({ port, target });
        if (client && (await isThere(client, wanted))) return client;
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
    await client?.close();
    throw new Error('the window does not show the page');
}

/** Starts a program with DevTools, lets `use` work with its page and ends it. */
export async function withPage(start, use) {
    const port = await freePort();
    const startedAt = Date.now();
    const child = start(port);
    const ended = once(child, 'exit');
    try {
        const client = await pageOf(port);
        try {
            return await use(client, { pid: child.pid, port, startedAt });
        } finally {
            await client.close();
        }
    } finally {
        child.kill('SIGKILL');
        await ended;
    }
}

/** How the window program starts, and how a bare view of the same Chromium shows a file. */
export const shellOn =
    (shell, { env, args = [] }) =>
    (port) =>
        spawn(shell, ['--debug-port', String(port), ...args], { stdio: 'ignore', env });
export const bareViewOn =
    (bareView, file, { env }) =>
    (port) =>
        spawn(bareView, [String(port), file], { stdio: 'ignore', env });

/** When the page was first painted, in milliseconds since 1970. */
export const firstPaint = `new Promise((resolve) => {
    const report = () => {
        const paint = performance.getEntriesByName('first-paint')[0];
        if (paint) resolve(performance.timeOrigin + paint.startTime);
        else setTimeout(report, 10);
    };
    report();
})`;
