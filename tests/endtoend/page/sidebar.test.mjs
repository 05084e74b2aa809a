import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, sidebarShown, viewTests } from './viewtest.mjs';

const texts = pageTexts.home;
const shared = viewTests();

const press = (...keys) => shared.display.act('key', '--clearmodifiers', ...keys);

/** Presses a key of the view once the view has the keyboard. */
async function pressIn(view, key) {
    await view.until('document.hasFocus()');
    await press(key);
}

const marked = (home) =>
    home.evaluate("document.querySelector('.side-item[aria-current]')?.innerText.trim()");

async function expectWhole(home) {
    await home.shows(texts.report.what, patience);
    await home.until('document.hasFocus()');
    expect(await home.evaluate(sidebarShown)).toBe(false);
}

test('a tool opens beside the sidebar, which marks it, in the one window', async () => {
    const { home, view } = await shared.open('crash');
    await home.shows(texts.sidebar.home, patience);
    await shared.display.windowCount(1);
    await home.until(`document.querySelector('.side-item[aria-current]')?.innerText.trim()
        === ${JSON.stringify(pageTexts.crash.title)}`);
    expect(await home.text()).not.toContain(texts.report.what);
    expect(await home.text()).not.toContain(texts.veil.title);
    await view.until('document.hasFocus()');
    const marks = "document.querySelectorAll('.title-bar-mark').length";
    expect([await home.evaluate(marks), await view.evaluate(marks)]).toEqual([1, 0]);

    // A press on the tool that is open leaves it as it is.
    await view.evaluate('window.kept = true');
    await home.press(pageTexts.crash.title);
    await home.press(pageTexts.crash.title);
    expect(await view.evaluate('window.kept')).toBe(true);
});

test.each(['Escape', 'alt+Left'])('%s leads back to where the user was', async (key) => {
    const { home, view } = await shared.open('permissions');
    await home.shows(texts.sidebar.home, patience);
    await pressIn(view, key);
    await expectWhole(home);
    const isBack = "document.activeElement.getAttribute('aria-label') === 'the tile'";
    await home.until(isBack);
    // Also when the view is out of sight. Between two documents there is none to ask.
    await waitFor(() => view.evaluate('document.hidden').catch(() => false), {
        ...patience,
        what: 'the end of the view',
    });
    expect(await home.evaluate(`document.hasFocus() && ${isBack}`)).toBe(true);
});

test('where the pointer comes to a tool, the window draws the view’s place before the click', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    await waiting.until("document.readyState === 'complete'");
    expect(await waiting.evaluate('document.hidden')).toBe(true);
    const tile = await home.evaluate(`(() => {
        const tool = document.querySelector('button.tool');
        tool.scrollIntoView({ block: 'center' });
        const box = tool.getBoundingClientRect();
        return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    })()`);
    await home.pointAt(tile);
    await waiting.until('!document.hidden');
    // Unseen: the main page is whole, and keeps the keyboard.
    await expectWhole(home);
    expect(await waiting.evaluate('document.hasFocus()')).toBe(false);
    // A pointer that has gone on is not waited for.
    await waiting.until('document.hidden', { timeoutMs: 30_000 });
});

test('the button of the view and the sidebar’s first entry lead back as well', async () => {
    const { home, view } = await shared.open('tools');
    await home.shows(texts.sidebar.home, patience);
    await view.press(pageTexts.frame.back);
    await expectWhole(home);
    await home.press('the tile');
    await home.shows(texts.sidebar.home, patience);
    await home.press(texts.sidebar.home);
    await expectWhole(home);
});

test('another tool is one click away, and the work of the first ends', async () => {
    const { home, view } = await shared.open('processes');
    await home.shows(texts.sidebar.home, patience);
    await home.evaluate(`window.widths = [];
        addEventListener('resize', () => widths.push(innerWidth))`);
    await home.press(pageTexts.about.title);
    const about = await shared.view('about');
    await about.until('document.hasFocus()');
    expect(await about.evaluate('window.helio !== undefined')).toBe(true);
    await home.until(`document.querySelector('.side-item[aria-current]')?.innerText.trim()
        === ${JSON.stringify(pageTexts.about.title)}`);
    expect(await marked(home)).toBe(pageTexts.about.title);
    expect(await home.evaluate('widths')).toEqual([]);
    // In the page that waited, or where that was not ready in a document of its own.
    expect(await view.evaluate('location.href')).toMatch(/[/#]about\.html$/);
    expect(await view.text()).not.toContain(pageTexts.processes.what);
});

test('in a small window the sidebar has icons with names for all who cannot see them', async () => {
    const { home, view } = await shared.open('sysinfo');
    await home.shows(texts.sidebar.home, patience);
    const [window] = await shared.display.windowCount(1);
    await shared.display.act('windowsize', window, 720, 480);
    await home.until("document.querySelector('.side-bar.icons-only') !== null");
    expect(await view.evaluate('innerWidth')).toBe(720 - 2 - 56);
    await home.press(pageTexts.about.title);
    const about = await shared.view('about');
    void about.press(pageTexts.frame.close).catch(() => {});
    expect(await shared.program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

/** Waits until the window is as large as that. */
async function sized(window, { width, height }) {
    await waitFor(
        async () => {
            const now = await shared.display.geometry(window);
            return now.width === width && now.height === height;
        },
        { what: `a window of ${width} × ${height}` },
    );
}

/** Where and how large a page believes to be. */
const ground = '[innerWidth, innerHeight, screenX, screenY].join()';

test('the title bar’s button and a double click on it maximise the window and restore it', async () => {
    const { home, view } = await shared.open('crash');
    const [window] = await shared.display.windowCount(1);
    const before = await shared.display.geometry(window);
    const groundBefore = await view.evaluate(ground);
    const whole = { width: 1400, height: 1000 };
    await view.press(pageTexts.frame.maximise);
    await sized(window, whole);
    await view.press(pageTexts.frame.restore);
    await sized(window, before);

    const pressTwice = async (page) => {
        const { x, y } = await page.placeOf('.title-bar');
        await shared.display.act('mousemove', x, y, 'click', '--repeat', 2, '--delay', 60, 1);
    };
    await view.until(`${ground} === '${groundBefore}'`);
    await pressTwice(view);
    await sized(window, whole);
    await home.until("[innerHeight, screenX, screenY].join() === '1000,0,0'");
    await pressTwice(home);
    await sized(window, before);
    expect(await shared.display.geometry(window)).toEqual(before);
});
