import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const letterSource =
    '{\\rtf1\\ansi{\\fonttbl{\\f0 Nowhere Installed Serif;}{\\f1 Calibri;}}' +
    '\\f0 Dear reader \\f1 and so on\\par}';
const texts = pageTexts.missingfonts;
const shared = viewTests();

test('the suite’s own program reports the fonts that a document lacks', async () => {
    const letter = shared.writeInHome('letter.doc', letterSource);
    const { view } = await shared.open('missingfonts');
    await view.shows(texts.empty, patience);
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', letter);
    await view.shows('Nowhere Installed Serif', patience);
    await view.shows(texts.sample.none, patience);
    const answer = shared.inHome('.local/share/Orvane/tmp/vyrmissfonts.ini');
    expect(await shared.fileWith(answer, Boolean)).toContain('Nowhere Installed Serif');
});

test('a document whose path contains spaces is checked as well', async () => {
    const letter = shared.writeInHome('my letter.doc', letterSource);
    const { view } = await shared.open('missingfonts');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', letter);
    await view.shows('Nowhere Installed Serif', patience);
});

test('the view of layout problems hands its document on', async () => {
    const letter = shared.writeInHome('letter.doc', letterSource);
    const { view } = await shared.open('layout');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', letter);
    await view.shows(pageTexts.layout.chosen, patience);
    await view.press(pageTexts.layout.fonts);
    const next = await shared.view('missingfonts');
    await next.shows('Nowhere Installed Serif', patience);
});

test('a document of another type is refused with a message', async () => {
    const picture = shared.writeInHome('picture.png', 'no document');
    const { view } = await shared.open('missingfonts');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', picture);
    await view.shows(texts.wrongType, patience);
});
