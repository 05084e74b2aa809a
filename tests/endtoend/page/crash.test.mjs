import fs from 'node:fs';
import { execFileSync } from 'node:child_process';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const settingsFile = '.config/Orvane/Office.conf';
const dumpDirectory = '.local/share/Orvane/tmp/dump';
const texts = pageTexts.crash;
const shared = viewTests();

test('the switch of the crash view stores whether dumps are kept', async () => {
    const { view } = await shared.open('crash');
    await view.shows(texts.keep.on, patience);
    await view.press(texts.keep.title);
    await shared.fileWith(shared.inHome(settingsFile), (text) => text.includes('SaveDump=false'));
    await view.shows(texts.keep.off, patience);
    await view.press(texts.keep.title);
    await shared.fileWith(shared.inHome(settingsFile), (text) => text.includes('SaveDump=true'));
    await view.shows(texts.keep.on, patience);
});

test('a dump that another process writes is shown, and deleting asks first', async () => {
    fs.mkdirSync(shared.inHome(dumpDirectory), { recursive: true });
    const { view } = await shared.open('crash');
    await view.shows(texts.dumps.noneText, patience);
    execFileSync('sh', [
        '-c',
        'echo dump > "$1"',
        'sh',
        shared.inHome(dumpDirectory, 'vyr_17.dmp'),
    ]);
    await view.shows('The suite has just left a crash dump', patience);
    await view.shows(texts.dumps.someText, patience);

    await view.press(texts.clear);
    await view.press(pageTexts.common.cancel);
    expect(fs.readdirSync(shared.inHome(dumpDirectory))).toEqual(['vyr_17.dmp']);
    await view.press(texts.clear);
    await view.press(texts.clearConfirm);
    await waitFor(() => fs.readdirSync(shared.inHome(dumpDirectory)).length === 0, {
        what: 'the empty dump directory',
    });
    await view.shows(texts.cleared, patience);
});

test('a setting that cannot be stored is not called changed', async () => {
    fs.mkdirSync(shared.inHome('.config'), { recursive: true });
    // Nobody can make a file there, the administrator neither.
    fs.symlinkSync('/proc/sys/kernel', shared.inHome('.config/Orvane'));
    const { view } = await shared.open('crash');
    await view.shows(texts.keep.on, patience);
    await view.press(texts.keep.title);
    await view.showsOneOf([texts.notSwitched, 'Nothing was changed'], patience);
    await view.press(pageTexts.common.refresh);
    await view.shows(texts.keep.on, patience);
    expect(await view.text()).not.toContain(texts.switchedOff);
    expect(await view.text()).not.toContain(texts.keep.off);
});

test('dumps are listed with what they tell, and their folder is opened', async () => {
    const minidump = Buffer.alloc(72);
    minidump.write('MDMP');
    for (const [place, value] of [
        [8, 1],
        [12, 32],
        [32, 6],
        [36, 168],
        [40, 56],
        [64, 6],
    ]) {
        minidump.writeUInt32LE(value, place);
    }
    fs.mkdirSync(shared.inHome(dumpDirectory), { recursive: true });
    fs.writeFileSync(shared.inHome(dumpDirectory, 'tbl_3.dmp'), minidump);
    const { view } = await shared.open('crash');
    await view.shows('SIGABRT', patience);
    await view.shows(texts.list.programs.tbl);
    await view.shows('tbl_3.dmp');
    await view.press(texts.openFolder);
    await view.showsOneOf([texts.folderOpened, texts.folderNotOpened], patience);
});
