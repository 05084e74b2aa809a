import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

async function openChild() {
    const program = await shared.start();
    const main = await program.page();
    const mainWindow = (await shared.display.windowCount(1))[0];
    const answer = await main.call('router', { page: 'child.html', type: '' });
    expect(answer).toEqual({ result: 'success' });
    const child = await program.page('child.html');
    const ids = await shared.display.windowCount(2);
    return { program, main, child, mainWindow, childWindow: ids.find((id) => id !== mainWindow) };
}

const middle = ({ x, y, width, height }) => [x + width / 2, y + height / 2];

test('the main window starts at its size and cannot be made smaller than its least', async () => {
    await shared.start();
    const window = (await shared.display.windowCount(1))[0];
    expect(await shared.display.geometry(window)).toMatchObject({ width: 1000, height: 680 });
    await shared.display.act('windowsize', window, 300, 200);
    await waitFor(async () => (await shared.display.geometry(window)).width !== 1000);
    expect(await shared.display.geometry(window)).toMatchObject({ width: 900, height: 600 });
});

test('a child window opens over the main one with the focus, and the tip is shown', async () => {
    const { main, child, mainWindow, childWindow } = await openChild();
    expect(await main.evaluate('tips')).toEqual(['show']);
    expect(await child.evaluate('document.title')).toBe('Child page');
    await shared.display.focused(childWindow);
    const [mainMiddle, childMiddle] = [
        middle(await shared.display.geometry(mainWindow)),
        middle(await shared.display.geometry(childWindow)),
    ];
    expect(Math.abs(mainMiddle[0] - childMiddle[0])).toBeLessThan(3);
    expect(Math.abs(mainMiddle[1] - childMiddle[1])).toBeLessThan(3);
});

test('a child page that closes itself takes the tip away and is kept', async () => {
    const { program, main, child, mainWindow } = await openChild();
    await child.evaluate('window.kept = true');
    await child.call('closechildwindow', { type: '' });
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
    expect(await main.evaluate('tips')).toEqual(['show', 'hide']);
    await shared.display.focused(mainWindow);
    expect(await child.evaluate('kept')).toBe(true);

    await main.call('router', { page: 'other.html', type: '' });
    await shared.display.windowCount(2);
    expect(await (await program.page('other.html')).evaluate('document.title')).toBe('Child page');
});

test('a child window closed by the window manager takes the tip away too', async () => {
    const { program, main, childWindow } = await openChild();
    await shared.display.focused(childWindow);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
    expect(await main.evaluate('tips')).toEqual(['show', 'hide']);
    expect(await main.call('getcollectionpage')).toEqual({ result: { page: '' } });
    // Only complaints of scripts: Chromium's own lines about the display vary.
    expect(program.stderr).not.toMatch(/^js: /m);
});

test('a child page may close its view in its own way when its window is closed', async () => {
    const { main, child, childWindow } = await openChild();
    await child.evaluate(`void window.addEventListener('helioclose', (event) => {
        event.preventDefault();
        window.asked = true;
        helio.call('closechildwindow', { type: 'crash' });
    })`);
    await shared.display.focused(childWindow);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await main.until('tips.length === 2');
    expect(await child.evaluate('asked')).toBe(true);
});

test('a child page that ignores its closing cannot keep the tip up', async () => {
    const { main, child, childWindow } = await openChild();
    await child.evaluate("void addEventListener('helioclose', (event) => event.preventDefault())");
    await shared.display.focused(childWindow);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await shared.display.windowCount(1);
    await main.until('tips.length === 2');
});

test('both windows are minimised, and the user brings both back with either', async () => {
    const { child, mainWindow, childWindow } = await openChild();
    for (const window of [mainWindow, childWindow]) {
        await child.call('showminimized');
        await shared.display.windowCount(0);
        await shared.display.act('windowmap', window);
        await shared.display.windowCount(2);
    }
});

/** Holds screenshots until the test calls the returned function. */
function holdScreenshots() {
    const go = path.join(shared.suite.home, 'go');
    fs.rmSync(go, { force: true });
    const program = path.join(shared.suite.addon, 'independScreenshot/screengrab');
    fs.rmSync(program);
    fs.writeFileSync(program, `#!/bin/sh\nuntil [ -e '${go}' ]; do sleep 0.05; done\n`, {
        mode: 0o755,
    });
    return () => fs.writeFileSync(go, '');
}

test('a screenshot from a child page has neither window in it', async () => {
    const letGo = holdScreenshots();
    const { child } = await openChild();
    const answer = child.call('screenshots');
    await shared.display.windowCount(0);
    letGo();
    expect(await answer).toEqual({ result: 'success' });
    await shared.display.windowCount(2);
});

test('a screenshot minimises the window and brings it back', async () => {
    const letGo = holdScreenshots();
    const program = await shared.start();
    const main = await program.page();
    const window = (await shared.display.windowCount(1))[0];
    const answer = main.call('screenshots');
    await shared.display.windowCount(0);
    letGo();
    expect(await answer).toEqual({ result: 'success' });
    await shared.display.windowCount(1);
    await shared.display.focused(window);
});

test('the window is dragged by the title bar of the page', async () => {
    const program = await shared.start();
    const main = await program.page();
    const window = (await shared.display.windowCount(1))[0];
    const before = await shared.display.geometry(window);
    const { x, y } = await main.placeOf('#bar');
    await shared.display.act('mousemove', x, y, 'mousedown', 1);
    await main.until('Boolean(window.isPressed)');
    // The window follows once the window manager has grabbed the pointer.
    await waitFor(
        async () => {
            await shared.display.act('mousemove', x + 79, y + 60, 'mousemove', x + 80, y + 60);
            const now = await shared.display.geometry(window);
            return now.x - before.x === 80 && now.y - before.y === 60;
        },
        { what: 'the move of the window' },
    );
    await shared.display.act('mouseup', 1);
});

test('the window is resized by its edge', async () => {
    await shared.start();
    const window = (await shared.display.windowCount(1))[0];
    const { x, y, width, height } = await shared.display.geometry(window);
    const edge = x + width - 2;
    let pointer = edge;
    await shared.display.act('mousemove', edge, y + height / 2, 'mousedown', 1);
    // The edge follows once the window manager has grabbed the pointer.
    await waitFor(
        async () => {
            await shared.display.act('mousemove', (pointer += 1), y + height / 2);
            return (await shared.display.geometry(window)).width >= width + 20;
        },
        { what: 'the wider window' },
    );
    await shared.display.act('mouseup', 1);
    const after = await shared.display.geometry(window);
    expect(after.width - width).toBeLessThanOrEqual(pointer - edge);
    expect(after).toMatchObject({ x, y, height });
});

test('closing the main window ends the program', async () => {
    const program = await shared.start();
    const main = await program.page();
    void main.call('closemainwindow').catch(() => {});
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

test('the window manager ends the program by closing the main window', async () => {
    const program = await shared.start();
    await program.page();
    await shared.display.focused((await shared.display.windowCount(1))[0]);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});
