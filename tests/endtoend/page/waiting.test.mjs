import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const shared = viewTests();

const nameOf = (page) => page.evaluate("location.href.split('/').pop()");
const open = (home, name) =>
    home.evaluate(`void helio.call('router', { page: '${name}.html', type: '' })`);

test('the child page waits out of sight, and shows each view in its document', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    await shared.display.windowCount(1);
    const renderers = shared.program.renderers().sort();
    await waiting.evaluate('window.isFirst = true');
    await open(home, 'tools');
    const view = await shared.view('tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
    expect(await view.evaluate('window.isFirst')).toBe(true);
    expect(await nameOf(view)).toBe('waiting.html#tools.html');
    expect(shared.program.renderers().sort()).toEqual(renderers);
    await view.evaluate(`document.addEventListener('visibilitychange', () => {
        if (document.hidden) window.hiddenWith = document.body.innerText;
    })`);
    await view.until('document.hasFocus()');
    await shared.display.act('key', 'Escape');
    await waitFor(async () => (await nameOf(view).catch(() => '')) === 'waiting.html', {
        what: 'the page that waits again',
        ...patience,
    });
    expect(await view.text()).toBe('');
    // Chromium shows the last picture of a page for a moment when it is seen again.
    await view.until("window.hiddenWith === ''", patience);
    expect(await home.evaluate('document.hasFocus()')).toBe(true);
    // What was read is kept.
    await open(home, 'tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
    expect(await view.evaluate('window.isFirst')).toBe(true);
    expect(await view.evaluate(`document.querySelectorAll('[src="tools.js"]').length`)).toBe(1);
});

test('a view in place of another one meets nothing of it', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    await open(home, 'tools');
    const tools = await shared.view('tools');
    await tools.shows(pageTexts.tools.groups.preload, patience);
    await open(home, 'about');
    const about = await shared.view('about');
    await about.shows(pageTexts.about.title, patience);
    expect(await nameOf(waiting)).toBe('waiting.html#about.html');
    expect(await about.text()).not.toContain(pageTexts.tools.groups.preload);
    const styles = "[...document.querySelectorAll('link[media=all]')].map((link) => link.href)";
    expect((await about.evaluate(styles)).join()).toMatch(/^[^,]*about\.css$/);
});

test('a page that has stopped while it waited still shows a view', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    const { Inspector, Page } = waiting.tools;
    await Inspector.enable();
    const crashed = Inspector.targetCrashed();
    // The crashed process does not answer.
    void Page.crash().catch(() => {});
    await crashed;
    await open(home, 'tools');
    const view = await shared.view('tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
});
