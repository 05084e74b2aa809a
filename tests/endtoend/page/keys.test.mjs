import { execFile, execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { promisify } from 'node:util';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { ShellProgram } from '../helio/shell/shellprogram.mjs';
import { pageTexts } from './texts.mjs';
import { patience, sidebarShown, viewTests } from './viewtest.mjs';

const run = promisify(execFile);
const shared = viewTests();
const press = (...keys) => shared.display.act('key', '--clearmodifiers', ...keys);
const focused = (page) => page.until('document.hasFocus()');
const fontSize = (page) => page.evaluate('document.documentElement.style.fontSize');

/** Presses keys until the element of that selector has the focus. */
async function tabTo(page, selector) {
    await waitFor(
        async () => {
            if (await page.evaluate(`document.activeElement.matches('${selector}')`)) return true;
            await press('Tab');
            return false;
        },
        { what: `the focus on ${selector}` },
    );
}

test('Ctrl+K in a view searches the tools', async () => {
    const { home, view } = await shared.open('sysinfo');
    await focused(view);
    await press('ctrl+k');
    await home.until("document.querySelector('.finder-field') !== null", patience);
    await focused(home);
    await home.until("document.activeElement.matches('.finder-field')");
    await home.until(`!(${sidebarShown})`);
});

/** All views take half a minute. */
const step = process.env.EVERY_VIEW ? 1 : 6;

test('views are opened, used and left with the keyboard alone', async () => {
    const home = await shared.home();
    // All views are shown by this one, one after the other.
    const view = await shared.program.page('waiting.html');
    await home.until("document.querySelectorAll('button.tool').length > 3");
    await focused(home);
    const count = await home.evaluate(`[...document.querySelectorAll('button.tool')]
        .map((tile, index) => { tile.dataset.tile = index; }).length`);
    expect(count).toBeGreaterThan(10);
    for (let tile = 0; tile < count; tile += step) {
        await tabTo(home, `[data-tile="${tile}"]`);
        await press('Return');
        await home.until("document.querySelector('.side-item[aria-current]') !== null");
        const name = await home.evaluate(
            "document.querySelector('.side-item[aria-current]').innerText.trim()",
        );
        const isReady = `document.hasFocus() && document.querySelector('.title-bar h1')
            ?.innerText.trim() === ${JSON.stringify(name)}`;
        // Between two documents there is none to ask.
        await waitFor(() => view.evaluate(isReady).catch(() => false), { what: name });
        await press('F6');
        await focused(home);
        expect(
            await home.evaluate("document.activeElement.matches('.side-item[aria-current]')"),
            name,
        ).toBe(true);
        await press(tile % 2 ? 'Escape' : 'alt+Left');
        await home.until(`!(${sidebarShown})`);
        // The focus is where it was.
        await home.until(`document.activeElement.matches('[data-tile="${tile}"]')`);
    }
});

test('a control that waits keeps the focus, and does nothing', async () => {
    const { view } = await shared.open('feedback');
    await focused(view);
    await view.until("document.querySelector('.summary-panel .el-button') !== null");
    await view.evaluate("document.querySelector('.summary-panel .el-button').focus()");
    expect(await view.evaluate('document.activeElement.ariaDisabled')).toBe('true');
    await press('Return');
    expect(await view.evaluate("document.activeElement.matches('.el-button')")).toBe(true);
    expect(await shared.display.windows(['--name', '^Save File'])).toEqual([]);
});

test('Escape clears the filter first, and then leaves', async () => {
    const { home, view } = await shared.open('sysinfo');
    await view.until("document.querySelector('input') !== null", patience);
    await focused(view);
    await view.evaluate("document.querySelector('input').focus()");
    await shared.display.act('type', 'zzz');
    await view.until("document.querySelector('input').value === 'zzz'");
    await press('Escape');
    await view.until("document.querySelector('input').value === ''");
    expect(await home.evaluate(sidebarShown)).toBe(true);
    await press('Escape');
    await home.until(`!(${sidebarShown})`);
});

test('the text grows and shrinks in both pages, and the sidebar with it', async () => {
    const { home, view } = await shared.open('tools');
    await focused(view);
    await press('ctrl+plus');
    await view.until("document.documentElement.style.fontSize === '125%'");
    await home.until("document.documentElement.style.fontSize === '125%' && innerWidth === 280");
    await press('ctrl+minus');
    await home.until("document.documentElement.style.fontSize === '100%' && innerWidth === 224");
    await press('ctrl+equal');
    await view.until("document.documentElement.style.fontSize === '125%'");
    await press('ctrl+0');
    await view.until("document.documentElement.style.fontSize === '100%'");
    expect(await fontSize(view)).toBe('100%');
});

test('F1 shows About, from the overview and from a view, and Ctrl+Q quits', async () => {
    const home = await shared.home();
    await home.until("document.querySelectorAll('button.tool').length > 3");
    await focused(home);
    await press('F1');
    const view = await shared.view('about');
    await home.press(pageTexts.tools.title);
    await view.until("document.title === 'Launch tools' || location.href.endsWith('tools.html')");
    await focused(view);
    await view.until("document.querySelector('.tool-page') !== null");
    await press('F1');
    await view.until(
        "location.href.endsWith('about.html') && document.querySelector('.tool-page')",
    );
    await press('ctrl+q');
    expect(await shared.program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

test('a menu pastes into a field what is on the clipboard', async () => {
    const { view } = await shared.open('feedback');
    await focused(view);
    execFileSync('xclip', ['-display', shared.display.name, '-selection', 'clipboard'], {
        input: 'from elsewhere',
        stdio: ['pipe', 'ignore', 'ignore'],
    });
    await view.evaluate("document.querySelector('textarea').focus()");
    await press('Menu');
    // Cut, copy, paste: what cannot be used is skipped.
    await waitFor(
        async () => {
            await press('p');
            await press('Return');
            return view.evaluate(
                "document.querySelector('textarea').value.includes('from elsewhere')",
            );
        },
        { what: 'the pasted text' },
    );
});

test('a menu copies what is selected', async () => {
    const { view } = await shared.open('about');
    await focused(view);
    await view.evaluate("getSelection().selectAllChildren(document.querySelector('main p'))");
    const selected = await view.evaluate('String(getSelection())');
    expect(selected.length).toBeGreaterThan(10);
    const copied = () =>
        run('xclip', ['-display', shared.display.name, '-selection', 'clipboard', '-o'], {
            timeout: 10_000,
        }).then(
            ({ stdout }) => stdout,
            () => '',
        );
    await waitFor(
        async () => {
            const { x, y } = await view.placeOf('main p');
            await shared.display.act('mousemove', x, y, 'click', 3);
            // The first entry that can be used.
            await press('Down', 'Return');
            return (await copied()) === selected;
        },
        { what: 'the copied text' },
    );
});

test('the view that was open when the window closed is opened again', async () => {
    const start = () =>
        ShellProgram.start(shared.suite, shared.display, ['--language', 'en'], { debug: false });
    const title = ['--name', `^${pageTexts.about.title}$`];
    const about = async () =>
        waitFor(async () => (await shared.display.windows(title)).length, patience);
    shared.program = await start();
    await shared.display.focused((await shared.display.windowCount(1))[0]);
    await waitFor(async () => {
        await press('F1');
        return (await shared.display.windows(title)).length > 0;
    }, patience);
    await shared.fileWith(shared.inHome('.config/office-assistant/window.ini'), (text) =>
        text.includes('about.html'),
    );
    await shared.program.stop();
    shared.program = await start();
    await about();
    await shared.display.focused((await shared.display.windowCount(1))[0]);
    await waitFor(async () => {
        await press('Escape');
        return (await shared.display.windows(title)).length === 0;
    }, patience);
    await shared.fileWith(
        shared.inHome('.config/office-assistant/window.ini'),
        (text) => !text.includes('about.html'),
    );
    expect(fs.existsSync(shared.inHome('.config/office-assistant/window.ini'))).toBe(true);
});
