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

/** Waits until the main page has become a sidebar, and the notice in place of the view the keys. */
async function besideNotice(main) {
    await main.until('innerWidth < 400');
    await main.until('!document.hasFocus()');
}

test('a view whose page has crashed can be left, and the tip goes', async () => {
    const program = await shared.start();
    const main = await program.page();
    const [window] = await shared.display.windowCount(1);
    await main.call('router', { page: 'child.html', type: '' });
    const child = await program.page('child.html');
    await child.until('document.hasFocus()');
    const renderers = program.renderers().length;
    // The crashed process does not answer.
    void child.tools.Page.crash().catch(() => {});
    await waitFor(() => program.renderers().length < renderers, { what: 'the crash' });
    await shared.display.focused(window);
    await waitFor(async () => {
        await shared.display.act('key', 'Escape');
        return (await main.evaluate('tips.length')) === 2;
    });
    await main.until('innerWidth > 1000 && document.hasFocus()');

    await main.call('router', { page: 'other.html', type: '' });
    const other = await program.page('other.html');
    expect(await other.call('getcollectionpage')).toEqual({ result: { page: '' } });
});

test('a view that is missing is named in a notice, which can be left', async () => {
    const program = await shared.start();
    const main = await program.page();
    const [window] = await shared.display.windowCount(1);
    await main.call('router', { page: 'none.html', type: '' });
    await shared.display.focused(window);
    await besideNotice(main);
    await shared.display.act('key', 'Escape');
    await main.until('tips.length === 2 && innerWidth > 1000');
});
