import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const shared = viewTests();

const nameOf = (page) => page.evaluate("location.href.split('/').pop()");
const open = (home, name) =>
    home.evaluate(`void helio.call('router', { page: '${name}.html', type: '' })`);

test('the child page waits out of sight, and shows the first view in its document', async () => {
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
    await view.until('document.hasFocus()');
    await shared.display.act('key', 'Escape');
    // What the view has left does not meet the next one.
    await waitFor(async () => (await nameOf(view).catch(() => '')) === 'waiting.html', {
        what: 'the page that waits again',
        ...patience,
    });
    expect(await view.evaluate('window.isFirst')).toBe(undefined);
    expect(await home.evaluate('document.hasFocus()')).toBe(true);
});

test('a view in place of another one has a document of its own', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    await open(home, 'tools');
    await (await shared.view('tools')).shows(pageTexts.tools.groups.preload, patience);
    await open(home, 'about');
    const about = await shared.view('about');
    await about.shows(pageTexts.about.title, patience);
    expect(await nameOf(waiting)).toBe('about.html');
});

test('a page that has stopped while it waited still shows a view', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    const renderers = shared.program.renderers().length;
    // The crashed process does not answer.
    void waiting.tools.Page.crash().catch(() => {});
    await waitFor(() => shared.program.renderers().length < renderers, { what: 'the crash' });
    await open(home, 'tools');
    const view = await shared.view('tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
});
