import fs from 'node:fs';
import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.permissions;
const shared = viewTests();

test('a file of any name is added by its dialog, and stands whole in the saved list', async () => {
    const file = shared.writeInHome('my own $(list).conf', 'a=1\n', { mode: 0o640 });
    const { view } = await shared.open('permissions');
    await view.shows('.config', patience);
    expect(await view.text()).not.toContain('my own');
    await view.press(texts.add);
    await shared.choose('Open File', file);
    await view.shows(texts.added, patience);
    await view.shows(file);
    await view.shows('-rw-r----- (0640)');

    await view.press(texts.exportAll);
    const list = shared.inHome('a list.txt');
    await shared.choose('Save File', list);
    await view.shows(filled(texts.saved, { file: list }), patience);
    expect(fs.readFileSync(list, 'utf8')).toMatch(/my own \$\(list\)\.conf {2}\S+ {2}-rw-r-----/);
});

test('a list that cannot be saved is not called saved', async () => {
    const { view } = await shared.open('permissions');
    await view.shows('.config', patience);
    await view.press(texts.exportAll, patience);
    await shared.choose('Save File', '/proc/nowhere.txt');
    await view.shows('cannot be written', patience);
});

test('a dialog that is cancelled adds nothing', async () => {
    const { view } = await shared.open('permissions');
    await view.shows('.config', patience);
    await view.press(texts.add);
    await shared.display.focused(await shared.display.dialog('Open File'));
    await shared.display.act('key', 'Escape');
    await view.shows(texts.notAdded, patience);
    expect(fs.readdirSync(shared.suite.home)).not.toContain('list');
});
