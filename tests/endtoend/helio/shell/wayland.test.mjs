import fs from 'node:fs';
import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';
import { afterAll, afterEach, beforeAll, beforeEach, expect, test } from 'vitest';

import { repository, suiteDirectory } from '../../paths.mjs';
import { DraggedFile } from './draggedfile.mjs';
import { ScratchSuite } from './scratchsuite.mjs';
import { SessionBus } from './sessionbus.mjs';
import { ShellProgram } from './shellprogram.mjs';
import { WaylandDisplay } from './waylanddisplay.mjs';

/** Of the title bar of the tests' page. */
const barColour = [0xcc, 0xdd, 0xee];

let suite;
let display;
let program;
let page;

beforeAll(async () => {
    suite = ScratchSuite.create();
    display = await WaylandDisplay.start(suite);
});

afterAll(async () => {
    await display?.stop();
    suite?.dispose();
});

afterEach(async () => program?.stop());

async function startWindow(env = {}) {
    program = await ShellProgram.start(suite, null, [], { env: { ...display.env, ...env } });
    page = await program.page();
}

beforeEach(() => startWindow());

/** Waits until the window is drawn on the screen; gives the bounds of its title bar. */
async function drawnBar() {
    return waitFor(() => display.boundsOf(barColour), { what: 'the picture of the window' });
}

/** Waits until the program has asked the compositor for something; gives how often. */
async function asked(pattern) {
    const all = new RegExp(` -> ${pattern}`, 'g');
    return waitFor(() => program.stderr.match(all)?.length, { what: pattern });
}

/** Puts the mouse on the window's title bar, however long the compositor takes to notice it. */
async function pointAtBar() {
    const bar = await drawnBar();
    await waitFor(
        async () => {
            await display.moveMouse(bar.left + 5, bar.top + 5);
            return page.evaluate("document.querySelector('#bar:hover') !== null");
        },
        { everyMs: 200, what: 'the mouse on the title bar' },
    );
    return bar;
}

async function clickBar() {
    await pointAtBar();
    await display.act('click', 1);
    await page.until('document.hasFocus()');
}

test('the window appears, is drawn and ends in order', async () => {
    const { left, right } = await drawnBar();
    // What is left beside the page's margins and the window's line.
    expect(right - left + 1).toBe(1120 - 2 - 64);
    await asked('xdg_toplevel@\\d+\\.set_app_id\\("org\\.officeassistant\\.officeassistant"\\)');
    await page.call('closemainwindow').catch(() => {});
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

test('the title bar moves the window', async () => {
    const before = await pointAtBar();
    await display.act('mousedown', 1);
    await asked('xdg_toplevel@\\d+\\.move\\(');
    await display.moveMouse(before.left + 45, before.top + 35);
    await display.act('mouseup', 1);
    const after = await waitFor(
        async () => {
            const bar = await display.boundsOf(barColour);
            return bar && bar.left !== before.left && bar;
        },
        { what: 'the move' },
    );
    expect(after).toMatchObject({ left: before.left + 40, top: before.top + 30 });
});

test('a file is chosen in a dialog', async () => {
    await clickBar();
    const windows = await asked('xdg_surface@\\d+\\.get_toplevel');
    await page.evaluate('void exportReport()');
    await asked('xdg_toplevel@\\d+\\.set_title\\("Save File');
    expect(await asked('xdg_surface@\\d+\\.get_toplevel')).toBe(windows + 1);
    const report = path.join(suite.home, 'report.txt');
    // The dialog has its keyboard a moment after it is there.
    await waitFor(
        async () => {
            await display.act('key', 'ctrl+a');
            await display.act('type', report);
            await display.act('key', 'Return');
            return waitFor(() => fs.existsSync(report), { timeoutMs: 5000 }).catch(() => false);
        },
        { what: 'the report' },
    );
    await page.until("document.getElementById('outcome').textContent === 'success'");
});

test('what is copied is offered to other programs', async () => {
    await clickBar();
    const answer = await page.call('copytoclipboard', { verification: 'copied 界' });
    expect(answer).toEqual({ result: 'success' });
    await asked('wl_data_source@\\d+\\.offer\\("text/plain;charset=utf-8"\\)');
    await asked('wl_data_device@\\d+\\.set_selection\\(wl_data_source@\\d+');
    // The compositor, which keeps it for when the program has ended, has asked for it.
    await waitFor(() => /wl_data_source@\d+\.send\(/.test(program.stderr), { what: 'its reader' });
});

test('a file of another program is dropped on the page', async () => {
    const file = path.join(suite.home, 'a report 界.odt');
    const bar = await drawnBar();
    const source = new DraggedFile(file, { ...suite.environment(), ...display.env });
    try {
        const from = await waitFor(() => display.boundsOf(DraggedFile.colour), {
            what: 'the file',
        });
        // The source has the mouse a moment after it is there.
        await waitFor(
            async () => {
                await display.act('mouseup', 1);
                await display.moveMouse(from.left + 60, from.top + 40);
                await display.act('mousedown', 1);
                const hasStarted = () => /wl_data_device@\d+\.start_drag\(/.test(source.said);
                return waitFor(hasStarted, { timeoutMs: 5000 }).catch(() => false);
            },
            { what: 'the drag' },
        );
        // The source lies above the window and is smaller: one end of the bar is free.
        const isLeftFree = from.left > (bar.left + bar.right) / 2;
        const x = isLeftFree ? bar.left + 5 : bar.right - 5;
        const moveThere = () => display.moveMouse(x, bar.top + 5);
        const drop = () => DraggedFile.dropOn(page, display, moveThere);
        expect(await DraggedFile.takenBy(page, drop)).toEqual({
            names: [path.basename(file)],
            paths: [file],
        });
    } finally {
        await source.stop();
    }
});

test('a screenshot is the portal’s', async () => {
    await program.stop();
    const bus = await SessionBus.start(suite);
    // The portal's file moves to the user's pictures.
    const content = fs.readFileSync(path.join(repository, 'helio/shell/icon.png'));
    const picture = path.join(suite.directory, 'portal.png');
    fs.writeFileSync(picture, content);
    const stub = path.join(path.dirname(suiteDirectory), 'tests/portalstub');
    const portal = start(stub, [picture], {
        env: { ...suite.environment(), ...bus.env },
        stdio: ['ignore', 'pipe', 'inherit'],
    });
    let isReady = false;
    portal.stdout.once('data', () => {
        isReady = true;
    });
    try {
        await waitFor(() => isReady, { what: 'the portal' });
        await startWindow(bus.env);
        await drawnBar();
        expect(await page.call('screenshots')).toEqual({ result: 'success' });
        const pictures = path.join(suite.home, 'Pictures');
        const [name] = await waitFor(
            () =>
                fs.existsSync(pictures) &&
                fs.readdirSync(pictures).length > 0 &&
                fs.readdirSync(pictures),
            { what: 'the screenshot' },
        );
        // It is written anew; its size comes behind the format's name.
        const sizeOf = (png) => png.toString('latin1', 1, 24);
        expect(sizeOf(fs.readFileSync(path.join(pictures, name)))).toBe(sizeOf(content));
        // The window is back.
        await drawnBar();
    } finally {
        await end(portal);
        await bus.stop();
    }
});
