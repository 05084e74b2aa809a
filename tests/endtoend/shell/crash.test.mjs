import fs from 'node:fs';
import path from 'node:path';
import { expect, test } from 'vitest';

import { waitFor } from '../waitfor.mjs';
import { windowTests } from './windowtest.mjs';

const shared = windowTests();

/** Kills the processes behind all pages, and waits until the window has noticed. */
async function killRenderers(program) {
    const killed = program.renderers();
    expect(killed.length).toBeGreaterThan(0);
    for (const pid of killed)
        process.kill(pid, 'SIGKILL');
    await waitFor(() => killed.every((pid) => !program.renderers().includes(pid)),
        { what: 'the end of the killed processes' });
}

/** Presses the notice's button, which has the focus, until the page is back. */
async function reloadByKey(program, window) {
    await shared.display.focused(window);
    const page = await waitFor(async () => {
        await shared.display.act('key', 'space');
        return program.page('index.html', { timeoutMs: 5000 }).catch(() => null);
    }, { timeoutMs: 90_000, what: 'the page after its reload' });
    await page.until('Boolean(window.helio)');
    return page;
}

test('a killed renderer leaves a notice whose button brings the page back', async () => {
    const program = await shared.start();
    let page = await program.page();
    const [window] = await shared.display.windowCount(1);
    for (let round = 0; round < 3; round += 1) {
        await killRenderers(program);
        page = await reloadByKey(program, window);
        expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
    }
    program.signal('SIGTERM');
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

test('nothing is reloaded by itself after a crash', async () => {
    const program = await shared.start();
    await program.page();
    await killRenderers(program);
    await new Promise((resolve) => {
        setTimeout(resolve, 1500);
    });
    expect(program.renderers()).toEqual([]);
});

test('a child window whose page has crashed can be closed, and the tip goes', async () => {
    const program = await shared.start();
    const main = await program.page();
    await shared.display.windowCount(1);
    await main.call('router', { page: 'child.html', type: '' });
    await program.page('child.html');
    const ids = await shared.display.windowCount(2);
    const before = new Set(program.renderers());
    const child = await childRenderer(program, main);
    expect(before.has(child)).toBe(true);
    process.kill(child, 'SIGKILL');
    await waitFor(() => !program.renderers().includes(child));
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
    expect(ids).toHaveLength(2);

    await main.call('router', { page: 'other.html', type: '' });
    const other = await program.page('other.html');
    expect(await other.call('getcollectionpage')).toEqual({ result: { page: '' } });
});

/** The renderer that is not the main page's: the one that a busy main page leaves idle. */
async function childRenderer(program, main) {
    const timeOf = (pid) => Number(fs.readFileSync(path.join('/proc', `${pid}`, 'stat'), 'utf8')
        .split(') ')[1].split(' ')[11]);
    const renderers = program.renderers();
    const before = new Map(renderers.map((pid) => [pid, timeOf(pid)]));
    await main.evaluate('(() => { const end = Date.now() + 500; while (Date.now() < end); })()');
    const spent = (pid) => timeOf(pid) - before.get(pid);
    return renderers.sort((a, b) => spent(a) - spent(b))[0];
}

test('a view that is missing is named in a notice, and its window can be closed', async () => {
    const program = await shared.start();
    const main = await program.page();
    await shared.display.windowCount(1);
    await main.call('router', { page: 'none.html', type: '' });
    await shared.display.windowCount(2);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
});
