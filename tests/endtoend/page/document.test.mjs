import { expect, test } from 'vitest';

import { TEXTS } from './texts.mjs';
import { PATIENCE, viewTests } from './viewtest.mjs';

const LETTER =
    '{\\rtf1\\ansi{\\fonttbl{\\f0 Nowhere Installed Serif;}{\\f1 Calibri;}}' +
    '\\f0 Dear reader \\f1 and so on\\par}';
const texts = TEXTS.missingfonts;
const shared = viewTests();

test('the suite’s own program reports the fonts that a document lacks', async () => {
    const letter = shared.writeInHome('letter.doc', LETTER);
    const { view } = await shared.open('missingfonts');
    await view.shows(texts.empty, PATIENCE);
    await view.press(TEXTS.common.chooseDocument);
    await shared.choose('Open File', letter);
    await view.shows('Nowhere Installed Serif', PATIENCE);
    const answer = shared.inHome('.local/share/Orvane/tmp/vyrmissfonts.ini');
    expect(await shared.fileWith(answer, Boolean)).toContain('Nowhere Installed Serif');
});

test('a document whose path contains spaces is checked as well', async () => {
    const letter = shared.writeInHome('my letter.doc', LETTER);
    const { view } = await shared.open('missingfonts');
    await view.press(TEXTS.common.chooseDocument);
    await shared.choose('Open File', letter);
    await view.shows('Nowhere Installed Serif', PATIENCE);
});

test('a document of another type is refused with a message', async () => {
    const picture = shared.writeInHome('picture.png', 'no document');
    const { view } = await shared.open('missingfonts');
    await view.press(TEXTS.common.chooseDocument);
    await shared.choose('Open File', picture);
    await view.shows(texts.wrongType, PATIENCE);
});
