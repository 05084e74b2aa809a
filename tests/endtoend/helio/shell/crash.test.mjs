import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

/** Kills the processes behind all pages, and waits until the window has noticed. */
async function killRenderers(program) {
    const killed = program.renderers();
    expect(killed.length).toBeGreaterThan(0);
    for (const pid of killed) process.kill(pid, 'SIGKILL');
    await waitFor(() => killed.every((pid) => !program.renderers().includes(pid)), {
        what: 'the end of the killed processes',
    });
}

/** Waits until the child window is there and has the keyboard. */
async function focusedChild(mainWindow) {
    const windows = await shared.display.windowCount(2);
    await shared.display.focused(windows.find((window) => window !== mainWindow));
}

test('a killed renderer leaves a notice whose button brings the page back', async () => {
    const program = await shared.start();
    let page = await program.page();
    const [window] = await shared.display.windowCount(1);
    for (let round = 0; round < 3; round += 1) {
        await killRenderers(program);
        page = await shared.reloadByKey(program, window);
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
    const [mainWindow] = await shared.display.windowCount(1);
    await main.call('router', { page: 'child.html', type: '' });
    const child = await program.page('child.html');
    await focusedChild(mainWindow);
    const renderers = program.renderers().length;
    // The crashed process does not answer.
    void child.tools.Page.crash().catch(() => {});
    await waitFor(() => program.renderers().length < renderers, { what: 'the crash' });
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');

    await main.call('router', { page: 'other.html', type: '' });
    const other = await program.page('other.html');
    expect(await other.call('getcollectionpage')).toEqual({ result: { page: '' } });
});

test('a view that is missing is named in a notice, and its window can be closed', async () => {
    const program = await shared.start();
    const main = await program.page();
    const [mainWindow] = await shared.display.windowCount(1);
    await main.call('router', { page: 'none.html', type: '' });
    await focusedChild(mainWindow);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
});
