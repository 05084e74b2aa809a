import { waitFor } from 'browser-driver';
import { afterEach, expect, test } from 'vitest';

import { pageTexts } from '../page/texts.mjs';
import { viewTests } from '../page/viewtest.mjs';
import { ScreenReader } from './screenreader.mjs';

const shared = viewTests();
let reader = null;

afterEach(async () => {
    await reader?.stop();
    reader = null;
});

const said = (text, after) =>
    reader.hears(text, after, 10_000).then(
        () => true,
        () => false,
    );

/** Waits until what has the focus is said. Orca at times misses that the focus has come back. */
async function hearsOnReturn(text, after) {
    const isSaid = async () => {
        if (await said(text, after)) return true;
        await shared.display.act('key', 'Tab');
        await shared.display.act('key', 'shift+Tab');
        return false;
    };
    await waitFor(isSaid, { what: text, timeoutMs: 60_000 });
}

/** Presses Tab until what has the focus then is said. */
async function hearsWithTab(page, after) {
    await waitFor(
        async () => {
            await shared.display.act('key', 'Tab');
            const label = await page.evaluate(
                'document.activeElement.ariaLabel ?? document.activeElement.innerText',
            );
            // Orca loses its way where the control that had the focus is gone, as a tile is.
            return said(label, after);
        },
        { what: 'what has the focus', timeoutMs: 60_000 },
    );
}

/** All views take two minutes. */
const step = process.env.EVERY_VIEW ? 1 : 6;

test('a screen reader says what the keyboard reaches, in each view', async () => {
    reader = await ScreenReader.start(shared.suite, shared.display);
    const home = await shared.home({ env: reader.env });
    // All views are shown by this one, one after the other.
    const view = await shared.program.page('waiting.html');
    await home.until('document.hasFocus()');
    await shared.display.act('key', 'Tab');
    await reader.hears(`${pageTexts.home.finder.open} `);
    // What is prepared out of sight takes no focus.
    expect(reader.said.join()).not.toContain(pageTexts.common.refresh);

    const count = await home.evaluate("document.querySelectorAll('button.tool').length");
    expect(count).toBeGreaterThan(10);
    for (let index = 0; index < count; index += step) {
        const before = reader.said.length;
        const name = await home.evaluate(`(() => {
            const tile = document.querySelectorAll('button.tool')[${index}];
            tile.focus();
            return tile.querySelector('strong').textContent;
        })()`);
        await reader.hears(name, before);
        const opened = reader.said.length;
        await shared.display.act('key', 'Return');
        const isReady = `document.hasFocus() &&
            document.querySelector('h1.title-bar-title')?.innerText === ${JSON.stringify(name)}`;
        // Between two documents there is none to ask.
        await waitFor(() => view.evaluate(isReady).catch(() => false), { what: name });
        await hearsWithTab(view, opened);
        const left = reader.said.length;
        await shared.display.act('key', 'Escape');
        await home.until(`document.hasFocus() &&
            document.activeElement.querySelector('strong')?.textContent === ${JSON.stringify(name)}`);
        await hearsOnReturn(name, left);
    }
});
