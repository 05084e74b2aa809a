import { spawn } from 'node:child_process';
import { setTimeout as pause } from 'node:timers/promises';
import { end } from 'browser-driver';
import { afterEach, expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.processes;
/** Longer than the view waits between two readings. */
const quiet = 6_500;
const shared = viewTests();
let large;

afterEach(async () => {
    if (large) await end(large);
    large = null;
});

const rowCount = (title) => `document.querySelectorAll(
    'table[aria-label=' + ${JSON.stringify(JSON.stringify(title))} + '] tbody tr').length`;

/** A process that uses a gigabyte, and so is among the machine's largest. */
function startLargeProcess() {
    large = spawn(
        process.execPath,
        ['-e', 'globalThis.held = Buffer.alloc(1 << 30, 1); setInterval(() => {}, 1000);'],
        { stdio: 'ignore' },
    );
    return large.pid;
}

test('both tables fill, and a process that grows large comes into its table', async () => {
    const { view } = await shared.open('processes');
    for (const title of [texts.busiest.title, texts.largest.title]) {
        await view.until(`${rowCount(title)} === 10`, patience);
    }
    await view.shows(texts.memory.title);
    const pid = startLargeProcess();
    await view.shows(` ${pid} `, patience);
});

test('a paused view reads nothing until it goes on', async () => {
    const { view } = await shared.open('processes');
    await view.until(`${rowCount(texts.largest.title)} === 10`, patience);
    await view.press(texts.history.table);
    await view.press(texts.history.pause);
    await view.shows(texts.history.paused);
    // A reading that was under way still completes; its three commands alternate with these.
    await view.evaluate(`(async () => {
        for (let turn = 0; turn < 4; turn += 1)
            await helio.call('getcomputermemory');
    })()`);
    const times = () =>
        view.evaluate(
            "[...document.querySelectorAll('.history-table tbody th')].map((cell) => cell.textContent)",
        );
    const before = await times();
    await pause(quiet);
    expect(await times()).toEqual(before);
    await view.press(texts.history.go);
    await view.until(
        `document.querySelectorAll('.history-table tbody th').length > ${before.length}`,
        patience,
    );
});
