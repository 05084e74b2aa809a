import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { setTimeout as pause } from 'node:timers/promises';
import { end, waitFor } from 'browser-driver';
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

const rows = "document.querySelectorAll('.program-panel tbody').length";
const times = (view) =>
    view.evaluate(
        "[...document.querySelectorAll('.history-table tbody th')].map((cell) => cell.textContent)",
    );

/** A process that uses a gigabyte, and so is among the machine's largest. */
function startLargeProcess() {
    large = spawn(
        process.execPath,
        ['-e', 'globalThis.held = Buffer.alloc(1 << 30, 1); setInterval(() => {}, 1000);'],
        { stdio: 'ignore' },
    );
    return large.pid;
}

test('a process is found by its number, and ends when its user says so', async () => {
    const { view } = await shared.open('processes');
    await view.until(`${rows} > 0`, patience);
    await view.shows(texts.memory.title);
    const pid = startLargeProcess();
    await view.fill(texts.all.filter, String(pid));
    await view.shows(texts.all.id.replace('{id}', pid), patience);
    const ended = once(large, 'exit');
    await view.locator('.program-panel .ask-once-start').click();
    await view.shows(texts.all.endQuestion);
    await view.locator('.ask-once-confirm').click();
    expect((await ended)[1]).toBe('SIGTERM');
    await view.shows(texts.all.none, patience);
});

test('the window is not among the programs that it lists', async () => {
    const { view } = await shared.open('processes');
    await view.until(`${rows} > 0`, patience);
    await view.fill(texts.all.filter, String(shared.program.pid));
    await view.until(`!document.querySelector('.program-panel')?.innerText.includes(
        ${JSON.stringify(texts.all.id.replace('{id}', ''))} + ${shared.program.pid})`);
});

test('from the first reading, curves show the load of the last quarter of an hour', async () => {
    const { view } = await shared.open('processes');
    await view.locator('.history-chart canvas').waitFor(patience);
    // The parts of its width that the line of the processor, which is drawn first, takes.
    const width = await view.until(
        `(() => {
            const canvas = document.querySelector('.history-chart canvas');
            const { data, width } = canvas.getContext('2d')
                .getImageData(0, 0, canvas.width, canvas.height);
            const columns = new Set();
            for (let at = 0; at < data.length; at += 4) {
                const [red, green, blue] = data.slice(at, at + 3);
                if (data[at + 3] === 255 && blue - red > 100) columns.add((at / 4) % width);
            }
            return columns.size > 0 && columns.size / width;
        })()`,
        patience,
    );
    expect(width).toBeGreaterThan(0.6);
});

test('a paused view reads nothing until it goes on', async () => {
    const { view } = await shared.open('processes');
    await view.until(`${rows} > 0`, patience);
    await view.press(texts.history.table);
    await view.press(texts.history.pause);
    await view.shows(texts.history.paused);
    // A reading that was under way still completes.
    let before = [];
    await waitFor(
        async () => {
            const last = before;
            before = await times(view);
            return last.length === before.length;
        },
        { everyMs: 2_000 },
    );
    await pause(quiet);
    expect(await times(view)).toEqual(before);
    await view.press(texts.history.go);
    await view.until(
        `document.querySelectorAll('.history-table tbody th').length > ${before.length}`,
        patience,
    );
});
