import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const veil = pageTexts.home.veil;
const shared = viewTests();

/** Waits until the newer one of the two windows has the keyboard focus. */
async function focusedView() {
    const ids = await shared.display.windowCount(2);
    const [, child] = ids.sort((one, other) => Number(one) - Number(other));
    await shared.display.focused(child);
}

async function expectClosed(home) {
    await shared.display.windowCount(1);
    await home.hides(veil.title, patience);
    await home.shows(pageTexts.home.heading, patience);
}

test('the home page is veiled while a view is open, and closes it from there', async () => {
    const { home } = await shared.open('crash');
    await shared.display.windowCount(2);
    await home.shows(veil.title, patience);
    expect(await home.text()).not.toContain(pageTexts.home.heading);
    await home.press(veil.close);
    await expectClosed(home);
});

test('Escape closes a view and takes the veil away', async () => {
    const { home } = await shared.open('permissions');
    await home.shows(veil.title, patience);
    await focusedView();
    await shared.display.act('key', 'Escape');
    await expectClosed(home);
});

test('the closing button of a view takes the veil away', async () => {
    const { home, view } = await shared.open('tools');
    await home.shows(veil.title, patience);
    await view.press(pageTexts.frame.close);
    await expectClosed(home);
});

test('a view that the window manager closes takes the veil away', async () => {
    const { home } = await shared.open('crash');
    await home.shows(veil.title, patience);
    await focusedView();
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await expectClosed(home);
});
