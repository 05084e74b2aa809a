import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { DraggedFile } from './draggedfile.mjs';
import { windowTests } from './windowtest.mjs';

const shared = windowTests();

/** What is left of the window's width inside its line. */
const insideWidth = 1120 - 2;
const sidebarWidth = 224;

const width = (page, pixels) => page.until(`innerWidth === ${pixels}`);

async function openChild() {
    const program = await shared.start();
    const main = await program.page();
    const [window] = await shared.display.windowCount(1);
    const answer = await main.call('router', { page: 'child.html', type: '' });
    expect(answer).toEqual({ result: 'success' });
    return { program, main, child: await program.page('child.html'), window };
}

test('the window starts at its size and cannot be made smaller than its least', async () => {
    await shared.start();
    const window = (await shared.display.windowCount(1))[0];
    expect(await shared.display.geometry(window)).toMatchObject({ width: 1120, height: 720 });
    await shared.display.act('windowsize', window, 300, 200);
    await waitFor(async () => (await shared.display.geometry(window)).width !== 1120);
    expect(await shared.display.geometry(window)).toMatchObject({ width: 720, height: 480 });
});

test('a view opens beside the main page with the keyboard, and the tip is shown', async () => {
    const { main, child, window } = await openChild();
    expect(await main.evaluate('tips')).toEqual(['show']);
    expect(await child.evaluate('document.title')).toBe('Child page');
    expect(await shared.display.windowCount(1)).toEqual([window]);
    await width(main, sidebarWidth);
    await width(child, insideWidth - sidebarWidth);
    await child.until('document.hasFocus()');
    expect(await shared.display.windows(['--name', '^Child page$'])).toEqual([window]);
});

test('a child page that closes itself takes the tip away and is kept', async () => {
    const { program, main, child } = await openChild();
    await child.evaluate('window.kept = true');
    await child.call('closechildwindow', { type: '' });
    await width(main, insideWidth);
    expect(await main.evaluate('tips')).toEqual(['show', 'hide']);
    await main.until('document.hasFocus()');
    expect(await child.evaluate('kept')).toBe(true);

    await main.call('router', { page: 'other.html', type: '' });
    await width(main, sidebarWidth);
    expect(await (await program.page('other.html')).evaluate('document.title')).toBe('Child page');
});

test('a view is left from the main page even if its own page does not answer', async () => {
    const { main, child } = await openChild();
    await child.call('feedbacktovyr', { infopage: 'crash' });
    void child.evaluate('for (;;);').catch(() => {});
    expect((await main.call('window.leave', { type: '' })).result).toMatchObject({
        view: 'child.html',
    });
    await width(main, insideWidth);
    expect(await main.evaluate('tips')).toEqual(['show', 'hide']);
});

test('a view that takes the place of another does not show the main page between', async () => {
    const { program, main, child } = await openChild();
    await child.call('feedbacktovyr', { infopage: 'crash' });
    await width(main, sidebarWidth);
    await main.evaluate(`window.widths = [];
        addEventListener('resize', () => widths.push(innerWidth));
        void helio.call('window.leave', { type: '' });
        void helio.call('router', { page: 'other.html', type: '' })`);
    const other = await program.page('other.html');
    await main.until('tips.length === 3');
    expect(await main.evaluate('tips')).toEqual(['show', 'hide', 'show']);
    // What the earlier view has handed over went with it.
    expect(await other.call('getcollectionpage')).toEqual({ result: { page: '' } });
    expect(await main.evaluate('widths')).toEqual([]);
});

test('the pages learn which view is shown, and the main page how wide it will be', async () => {
    const { main, child } = await openChild();
    await main.evaluate(`window.states = [];
        addEventListener('heliowindow', ({ detail }) => states.push(detail))`);
    const { result } = await main.call('window.sidebar', { width: 300, narrow: 90 });
    expect(result).toEqual({ action: '', view: 'child.html', maximised: false, last: '' });
    // The window is less than four times as wide.
    await width(main, 90);
    await main.call('window.sidebar', { width: 250, narrow: 90 });
    await width(main, 250);
    await child.call('closechildwindow', { type: '' });
    await main.until('states.length === 1');
    expect(await main.evaluate('states')).toEqual([{ action: '', view: '', maximised: false }]);
});

test('the window is maximised and restored by its pages', async () => {
    const { main, child, window } = await openChild();
    const before = await shared.display.geometry(window);
    await child.call('window.maximise');
    await width(child, 1400 - sidebarWidth);
    expect(await shared.display.geometry(window)).toMatchObject({ width: 1400, height: 1000 });
    await waitFor(async () => (await child.call('window.state')).result.maximised);
    await main.call('window.maximise');
    await width(child, insideWidth - sidebarWidth);
    expect(await shared.display.geometry(window)).toEqual(before);
});

test('the window manager ends the program by closing the window, also beside a view', async () => {
    const { program, window } = await openChild();
    await shared.display.focused(window);
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
    // Only complaints of scripts: Chromium's own lines about the display vary.
    expect(program.stderr).not.toMatch(/^js: /m);
});

test('the window is minimised from a view, and the user brings it back', async () => {
    const { child, window } = await openChild();
    await child.call('showminimized');
    await shared.display.windowCount(0);
    await shared.display.act('windowmap', window);
    await shared.display.windowCount(1);
    await child.until('document.visibilityState === "visible"');
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

test('a screenshot from a view has no window in it', async () => {
    const letGo = holdScreenshots();
    const { child } = await openChild();
    const answer = child.call('screenshots');
    await shared.display.windowCount(0);
    letGo();
    expect(await answer).toEqual({ result: 'success' });
    await shared.display.windowCount(1);
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

describe('a file of another program', () => {
    const name = 'a report 界.html';
    let main;
    let source;

    beforeEach(async () => {
        const program = await shared.start();
        main = await program.page();
        await shared.display.windowCount(1);
        const file = path.join(shared.suite.home, name);
        fs.writeFileSync(file, '<title>A report</title>');
        source = new DraggedFile(file, shared.suite.environment(shared.display));
    });

    afterEach(async () => source.stop());

    /** Drags the file from its window to the page. */
    async function drop() {
        const find = () => shared.display.windows(['--class', 'dragsource']);
        const [window] = await waitFor(async () => (await find()).length > 0 && find(), {
            what: 'the file',
        });
        // Not above the middle of the title bar.
        await shared.display.act('windowmove', '--sync', window, 0, 0);
        const { x, y } = await main.placeOf('#bar');
        await shared.display.act('mousemove', 60, 40, 'mousedown', 1);
        await DraggedFile.dropOn(main, shared.display, () =>
            shared.display.act('mousemove', x - 1, y, 'mousemove', x, y),
        );
    }

    test('is dropped on a page that takes it', async () => {
        expect(await DraggedFile.takenBy(main, drop)).toEqual({
            names: [name],
            paths: [path.join(shared.suite.home, name)],
        });
    });

    test('is not opened by a page that does not take it', async () => {
        await drop();
        await waitFor(() => source.said.includes('the file was let go'), { what: 'the drop' });
        // Chromium may begin to open it only then.
        await main.evaluate('new Promise((resolve) => setTimeout(resolve, 1000))');
        expect(await main.evaluate('window.isOver && document.title')).toBe('Main page');
    });
});

/** In which direction each edge and corner of the window leads. */
const edges = [
    { edge: 'left', right: -1, down: 0 },
    { edge: 'right', right: 1, down: 0 },
    { edge: 'top', right: 0, down: -1 },
    { edge: 'bottom', right: 0, down: 1 },
    { edge: 'top left', right: -1, down: -1 },
    { edge: 'top right', right: 1, down: -1 },
    { edge: 'bottom left', right: -1, down: 1 },
    { edge: 'bottom right', right: 1, down: 1 },
];

test.each(edges)(
    'the window is resized at its $edge, beside a view as well',
    async ({ right, down }) => {
        const { window } = await openChild();
        const before = await shared.display.geometry(window);
        const { x, y, width, height } = before;
        const at = (from, length, direction) =>
            [from + 1, from + Math.round(length / 2), from + length - 2][direction + 1];
        const grip = { x: at(x, width, right), y: at(y, height, down) };
        await shared.display.act('mousemove', grip.x, grip.y, 'mousedown', 1);
        // The edge follows once the window manager has grabbed the pointer.
        let far = 0;
        await waitFor(
            async () => {
                far += 1;
                await shared.display.act('mousemove', grip.x + far * right, grip.y + far * down);
                const now = await shared.display.geometry(window);
                return (
                    now.width >= width + 20 * Math.abs(right) &&
                    now.height >= height + 20 * Math.abs(down)
                );
            },
            { what: 'the larger window' },
        );
        await shared.display.act('mouseup', 1);
        const after = await shared.display.geometry(window);
        // What is opposite stays where it is.
        const grown = { width: after.width - width, height: after.height - height };
        expect(grown.width).toBeLessThanOrEqual(far * Math.abs(right));
        expect(grown.height).toBeLessThanOrEqual(far * Math.abs(down));
        expect(after).toMatchObject({
            x: right < 0 ? x - grown.width : x,
            y: down < 0 ? y - grown.height : y,
        });
    },
);

test('a page ends the program by closing the window', async () => {
    const program = await shared.start();
    const main = await program.page();
    void main.call('closemainwindow').catch(() => {});
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});
