import fs from 'node:fs';
import { execFileSync } from 'node:child_process';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { TEXTS } from './texts.mjs';
import { PATIENCE, viewTests } from './viewtest.mjs';

const SETTINGS = '.config/Orvane/Office.conf';
const DUMPS = '.local/share/Orvane/tmp/dump';
const texts = TEXTS.crash;
const shared = viewTests();

test('the switch of the crash view stores whether dumps are kept', async () => {
    const { view } = await shared.open('crash');
    await view.shows(texts.keep.on, PATIENCE);
    await view.press(texts.keep.title);
    await shared.fileWith(shared.inHome(SETTINGS), (text) => text.includes('SaveDump=false'));
    await view.shows(texts.keep.off, PATIENCE);
    await view.press(texts.keep.title);
    await shared.fileWith(shared.inHome(SETTINGS), (text) => text.includes('SaveDump=true'));
    await view.shows(texts.keep.on, PATIENCE);
});

test('a dump that another process writes is shown, and deleting asks first', async () => {
    fs.mkdirSync(shared.inHome(DUMPS), { recursive: true });
    const { view } = await shared.open('crash');
    await view.shows(texts.dumps.noneText, PATIENCE);
    execFileSync('sh', ['-c', 'echo dump > "$1"', 'sh', shared.inHome(DUMPS, 'vyr_17.dmp')]);
    await view.shows('The suite has just left a crash dump', PATIENCE);
    await view.shows(texts.dumps.someText, PATIENCE);

    await view.press(texts.clear);
    await view.press(TEXTS.common.cancel);
    expect(fs.readdirSync(shared.inHome(DUMPS))).toEqual(['vyr_17.dmp']);
    await view.press(texts.clear);
    await view.press(texts.clearConfirm);
    await waitFor(() => fs.readdirSync(shared.inHome(DUMPS)).length === 0, {
        what: 'the empty dump directory',
    });
    await view.shows(texts.cleared, PATIENCE);
});
