import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const shared = viewTests();

test('the child page waits out of sight, and its process shows the first view', async () => {
    const home = await shared.home();
    const waiting = await shared.program.page('waiting.html');
    await shared.display.windowCount(1);
    const renderers = shared.program.renderers().sort();
    await home.evaluate("void helio.call('router', { page: 'tools.html', type: '' })");
    const view = await shared.view('tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
    expect(await waiting.evaluate("location.pathname.split('/').pop()")).toBe('tools.html');
    expect(shared.program.renderers().sort()).toEqual(renderers);
});
