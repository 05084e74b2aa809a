import fs from 'node:fs';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.permissions;
const shared = viewTests();

test('a file is added by its dialog, and the list with it is exported', async () => {
    const file = shared.writeInHome('own.conf', 'a=1\n', { mode: 0o640 });
    const { view } = await shared.open('permissions');
    await view.shows('Office.conf', patience);
    expect(await view.text()).not.toContain('own.conf');
    await view.press(texts.add);
    await shared.choose('Open File', file);
    await view.shows(texts.added, patience);
    await view.shows('own.conf');
    await view.shows('110-100-000');

    await view.press(texts.exportAll);
    const list = shared.inHome('list');
    await shared.choose('Save File', list);
    await view.shows(texts.exportedAll, patience);
    expect(await shared.fileWith(list, (text) => text.includes('own.conf'))).toContain(
        '-rw-r-----',
    );
});

test('a dialog that is cancelled adds nothing', async () => {
    const { view } = await shared.open('permissions');
    await view.shows('Office.conf', patience);
    await view.press(texts.add);
    await shared.display.focused(await shared.display.dialog('Open File'));
    await shared.display.act('key', 'Escape');
    await view.shows(texts.notAdded, patience);
    expect(fs.readdirSync(shared.suite.home)).not.toContain('list');
});
