import { expect, test } from 'vitest';

import { TEXTS } from './texts.mjs';
import { PATIENCE, viewTests } from './viewtest.mjs';

const veil = TEXTS.home.veil;
const shared = viewTests();

/** Waits until the newer one of the two windows has the keyboard focus. */
async function focusedView() {
    const [, child] = (await shared.display.windowCount(2)).sort((one, other) => one - other);
    await shared.display.focused(child);
}

async function expectClosed(home) {
    await shared.display.windowCount(1);
    await home.hides(veil.title, PATIENCE);
    await home.shows(TEXTS.home.heading, PATIENCE);
}

test('the home page is veiled while a view is open, and closes it from there', async () => {
    const { home } = await shared.open('crash');
    await shared.display.windowCount(2);
    await home.shows(veil.title, PATIENCE);
    expect(await home.text()).not.toContain(TEXTS.home.heading);
    await home.press(veil.close);
    await expectClosed(home);
});

test('Escape closes a view and takes the veil away', async () => {
    const { home } = await shared.open('permissions');
    await home.shows(veil.title, PATIENCE);
    await focusedView();
    await shared.display.act('key', 'Escape');
    await expectClosed(home);
});

test('the closing button of a view takes the veil away', async () => {
    const { home, view } = await shared.open('tools');
    await home.shows(veil.title, PATIENCE);
    await view.press(TEXTS.frame.close);
    await expectClosed(home);
});

test('a view that the window manager closes takes the veil away', async () => {
    const { home } = await shared.open('crash');
    await home.shows(veil.title, PATIENCE);
    await focusedView();
    await shared.display.act('key', '--clearmodifiers', 'alt+F4');
    await expectClosed(home);
});
