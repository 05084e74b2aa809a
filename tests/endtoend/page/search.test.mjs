import fs from 'node:fs';
import path from 'node:path';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.search;
const shared = viewTests();

async function search(keyword) {
    // On a busy machine the low-priority refresh takes longer than a search waits for it.
    fs.writeFileSync(path.join(shared.suite.fakes, 'nice'), '#!/bin/sh\nshift 2\nexec "$@"\n', {
        mode: 0o755,
    });
    const { view } = await shared.open('search');
    await view.fill(texts.keyword, keyword);
    await view.press(texts.start);
    await view.shows(texts.finished, patience);
    return view;
}

test('files of the home are found by a part of their name, and filtered', async () => {
    for (const name of ['letters/Needle one.docx', 'letters/needle-two.txt', 'other.txt']) {
        shared.writeInHome(name, 'x');
    }
    const view = await search('needle');
    await view.shows('2 found');
    expect(await view.text()).not.toContain('other.txt');
    await view.fill(texts.filter, 'two');
    await view.shows('1 of 2');
    await view.hides('Needle one.docx');
});

test('a search begins while one types, and sorts by the sizes of the disk', async () => {
    shared.writeInHome('letters/needle small.txt', 'x');
    shared.writeInHome('letters/needle large.txt', 'x'.repeat(3_072));
    const { view } = await shared.open('search');
    await view.fill(texts.keyword, 'needle');
    await view.shows(texts.finished, patience);
    await view.shows('3 KiB', patience);
    await view.press(texts.sortBy.replace('{column}', texts.columns.size));
    await view.until(
        "[...document.querySelectorAll('.hit-row')].sort((one, two) => one.ariaPosInSet - two.ariaPosInSet)[0].textContent.includes('large')",
        patience,
    );
    await view.press(texts.sortedDown.replace('{column}', texts.columns.size));
    await view.until(
        "[...document.querySelectorAll('.hit-row')].sort((one, two) => one.ariaPosInSet - two.ariaPosInSet)[0].textContent.includes('small')",
        patience,
    );
});

test('a found file is opened by the desktop, and so is its folder', async () => {
    const letter = shared.writeInHome('letters/needle.txt', 'Dear reader');
    const view = await search('needle');
    await view.select('needle.txt', patience);
    await view.press(texts.open);
    const opened = (path) =>
        shared.fileWith(shared.inHome('opened'), (text) =>
            text.split('\n').some((line) => line === path || line === `file://${path}`),
        );
    await opened(letter);
    await view.shows(texts.opened, patience);
    await view.press(texts.openFolder);
    await opened(shared.inHome('letters'));
});

test('an executable file is not opened, and the view says so', async () => {
    shared.writeInHome('needle.txt', '#!/bin/sh\ntouch "$HOME/ran"\n', { mode: 0o755 });
    const view = await search('needle');
    await view.select('needle.txt', patience);
    await view.press(texts.open);
    await view.shows(texts.unsafe, patience);
    expect(await view.text()).not.toContain(texts.opened);
});

/** Makes the last refresh of the database look a minute old. */
function age() {
    const past = new Date(Date.now() - 60_000);
    const databases = shared.inHome('.cache/orvane-office-assistant');
    for (const name of fs.readdirSync(databases).filter((each) => /\.(db|lock)$/.test(each))) {
        fs.utimesSync(path.join(databases, name), past, past);
    }
}

test('a search without hits says so, and finds a new file a minute later', async () => {
    const view = await search('needle');
    await view.shows(texts.none);
    shared.writeInHome('needle.txt', 'x');
    age();
    await view.press(texts.start);
    await view.shows('1 found', patience);
    await view.shows(texts.finished, patience);
});
