import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const { actions } = pageTexts.tools;
const recorder = `#!/bin/sh
printf '%s|' "\${0##*/}" "$@" >> "$HOME/started"
`;
const shared = viewTests();

async function openTools() {
    const { view } = await shared.open('tools');
    const start = async (name) => {
        await view.press(actions[name].start, { within: actions[name].title });
        await view.shows(actions[name].done, patience);
    };
    const started = (call) =>
        shared.fileWith(shared.inHome('started'), (text) => text.endsWith(call));
    return { start, started };
}

test('preloading is stopped and restarted by its program in PATH', async () => {
    fs.writeFileSync(path.join(shared.suite.fakes, 'quickstartoffice'), recorder, { mode: 0o755 });
    const { start, started } = await openTools();
    await start('stop');
    await started('quickstartoffice|stop|false|');
    await start('restart');
    await started('quickstartoffice|restart|false|');
});

test('recorder and editing tools are started from the suite', async () => {
    shared.writeInOffice('addons/vyrassistanttool/screencap/screencap', recorder, { mode: 0o755 });
    shared.writeInOffice('eptools', recorder, { mode: 0o755 });
    const { start, started } = await openTools();
    await start('record');
    await started('screencap|');
    await start('replace');
    await started('eptools|-replacefile|');
    await start('apilog');
    await started('eptools|-apilog|');
});

/** Width and height of a PNG. */
const sizeOf = (png) => [png.readUInt32BE(16), png.readUInt32BE(20)];

test('a screenshot is saved and on the clipboard, and the window comes back', async () => {
    const { start } = await openTools();
    const before = await shared.display.windowCount(1);
    await start('screenshot');
    expect(await shared.display.windowCount(1)).toEqual(before);
    const [picture, ...others] = fs.readdirSync(shared.inHome('Pictures'));
    expect(picture).toMatch(/^screenshot-[-\d]+\.png$/);
    expect(others).toEqual([]);
    expect(sizeOf(fs.readFileSync(shared.inHome('Pictures', picture)))).toEqual([1400, 1000]);
    const clipboard = execFileSync(
        'xclip',
        [
            '-display',
            shared.display.name,
            '-selection',
            'clipboard',
            '-target',
            'image/png',
            '-out',
        ],
        { timeout: 60_000, maxBuffer: 64 * 1024 * 1024 },
    );
    expect(sizeOf(clipboard)).toEqual([1400, 1000]);
});

test('without the capture part the window comes back all the same', async () => {
    fs.rmSync(path.join(shared.suite.addon, 'independScreenshot'), { recursive: true });
    const { start } = await openTools();
    const before = await shared.display.windowCount(1);
    await start('screenshot');
    expect(await shared.display.windowCount(1)).toEqual(before);
    expect(fs.existsSync(shared.inHome('Pictures'))).toBe(false);
});
