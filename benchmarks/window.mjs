// Figures of the window, against a bare view of the same Chromium that shows the same page.

import CDP from 'chrome-remote-interface';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { createServer } from 'node:net';
import { compare, figure } from './measure.mjs';
import { settledMemoryOf } from './processes.mjs';

const roundTrips = 1000;

async function freePort() {
    const server = createServer().listen(0, '127.0.0.1');
    await once(server, 'listening');
    const { port } = server.address();
    server.close();
    await once(server, 'close');
    return port;
}

async function pageOf(port) {
    const deadline = Date.now() + 30000;
    while (Date.now() < deadline) {
        try {
            const targets = await CDP.List({ port });
            const page = targets.find((target) => target.type === 'page' && target.url.startsWith('file:'));
            if (page) return await CDP({ port, target: page });
        } catch {
            // not listening yet
        }
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
    throw new Error('the window shows no page');
}

async function evaluate(client, expression) {
    const answer = await client.Runtime.evaluate({ expression, awaitPromise: true, returnByValue: true });
    if (answer.exceptionDetails) throw new Error(JSON.stringify(answer.exceptionDetails));
    return answer.result.value;
}

/** Starts a program with DevTools, lets `use` work with its page and ends it. */
async function withPage(start, use) {
    const port = await freePort();
    const startedAt = Date.now();
    const child = start(port);
    const ended = once(child, 'exit');
    try {
        const client = await pageOf(port);
        try {
            return await use(client, { pid: child.pid, startedAt });
        } finally {
            await client.close();
        }
    } finally {
        child.kill('SIGKILL');
        await ended;
    }
}

const firstPaint = `new Promise((resolve) => {
    const report = () => {
        const paint = performance.getEntriesByName('first-paint')[0];
        if (paint) resolve(performance.timeOrigin + paint.startTime);
        else setTimeout(report, 10);
    };
    report();
})`;

const timeOf = (call) => `(async () => {
    while (!(${call})) await new Promise((resolve) => setTimeout(resolve, 10));
    const begin = performance.now();
    for (let n = 0; n < ${roundTrips}; n++) await (${call})();
    return (performance.now() - begin) / ${roundTrips};
})()`;

const oursCall = "window.helio && (() => window.helio.call('getcollectionpage'))";
const peerCall = "window.echo && (() => window.echo('getcollectionpage'))";

/** @param {{shell: string, bareView: string, html: string}} programs */
export async function windowFigures({ shell, bareView, html }) {
    const shellStart = (port) => spawn(shell, ['--debug-port', String(port)], { stdio: 'ignore' });
    const peerStart = (port) => spawn(bareView, [String(port), html], { stdio: 'ignore' });
    const paintAfterStart = async (client, { startedAt }) => (await evaluate(client, firstPaint)) - startedAt;
    const memory = async (client, { pid }) => {
        await evaluate(client, firstPaint);
        return settledMemoryOf(pid);
    };

    return [
        figure('page to library and back', 'ms', await withPage(shellStart, (ours) =>
            withPage(peerStart, (peer) =>
                compare(7, () => evaluate(ours, timeOf(oursCall)), () => evaluate(peer, timeOf(peerCall))))), 1.5),
        figure('start to first paint of the home page', 'ms', await compare(9,
            () => withPage(shellStart, paintAfterStart),
            () => withPage(peerStart, paintAfterStart)), 1.2),
        figure('memory of the window', 'MiB', await compare(5,
            () => withPage(shellStart, memory),
            () => withPage(peerStart, memory)), null),
    ];
}
