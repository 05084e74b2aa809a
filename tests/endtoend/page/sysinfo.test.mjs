import fs from 'node:fs';
import os from 'node:os';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.sysinfo;
const libreOffice = '/usr/lib/libreoffice';
const shared = viewTests();

test('the system report tells of this machine, filters, and is exported', async () => {
    const home = await shared.home({
        env: { HELIO_TEST_MARK: 'seen in the report', HELIO_TEST_TOKEN: 'not for others' },
    });
    await home.press(pageTexts.home.report.view);
    const view = await shared.view('sysinfo');
    await view.shows(os.release(), patience);
    await view.shows(texts.machine.room, patience);
    await view.evaluate(`void [...document.querySelectorAll('[role="tab"]')]
        .find((tab) => tab.textContent.includes(${JSON.stringify(texts.sections.environment)}))
        .click()`);
    await view.fill(pageTexts.common.filter, 'HELIO_TEST_MARK');
    await view.shows('seen in the report', patience);

    await view.press(pageTexts.report.export);
    const report = shared.inHome('report.txt');
    await shared.choose('Save File', report);
    await view.shows(pageTexts.export.shown, patience);
    const written = await shared.fileWith(report, (text) => text.includes('suite-end'));
    expect(written).toContain('seen in the report');
    expect(written).toContain('HELIO_TEST_TOKEN=(hidden)');
    expect(written).not.toContain('not for others');
});

test.runIf(fs.existsSync(libreOffice))('the overview names the suite of this machine', async () => {
    const home = await shared.home();
    await home.press(pageTexts.home.report.view);
    const view = await shared.view('sysinfo');
    await view.shows(`(${libreOffice})`, patience);
});

test('a report that cannot be written is not called saved', async () => {
    const home = await shared.home();
    await home.press(pageTexts.report.export);
    await shared.choose('Save File', '/sys/report.txt');
    await home.shows('The report was not saved. /sys/report.txt cannot be written', patience);
});

test('a report takes the place of a file of any name once that is confirmed', async () => {
    const file = shared.inHome(`it's mine $(touch owned) [1]; \`touch owned\`.txt`);
    fs.writeFileSync(file, 'earlier');
    const home = await shared.home();
    await home.press(pageTexts.report.export);
    await shared.choose('Save File', file);
    const asked = await waitFor(
        async () => {
            const ids = await shared.display.windows(['--name', '^Save File']);
            return ids.length > 1 && ids;
        },
        { what: 'the question' },
    );
    expect(fs.readFileSync(file, 'utf8')).toBe('earlier');
    await waitFor(async () => asked.includes((await shared.display.act('getwindowfocus')).trim()));
    await shared.display.act('key', 'alt+y');
    await home.shows(pageTexts.export.shown, patience);
    expect(fs.readFileSync(file, 'utf8')).toContain('suite-end');
    expect(fs.readdirSync(shared.suite.home)).not.toContain('owned');
});
