import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

async function clickExport() {
    const program = await shared.start();
    const page = await program.page();
    await shared.display.windowCount(1);
    const { x, y } = await page.placeOf('#export');
    await shared.display.act('mousemove', x, y, 'click', 1);
    await shared.display.focused(await shared.display.dialog('Save File'));
    return page;
}

test('a click on export asks for a file and writes the system report into it', async () => {
    const page = await clickExport();
    const report = path.join(shared.suite.home, 'my report');
    await shared.display.act('key', 'ctrl+a', 'type', '--delay', '5', report);
    await shared.display.act('key', 'Return');
    const outcome = "document.getElementById('outcome').textContent";
    await page.until(`${outcome} !== ''`, { timeoutMs: 90_000 });
    expect(await page.evaluate(outcome)).toBe('success');
    const text = fs.readFileSync(report, 'utf8');
    expect(text).toMatch(/\r\n/);
    expect(text).toContain('Linux');
    const opened = path.join(shared.suite.home, 'opened');
    await waitFor(
        () => fs.existsSync(opened) && fs.readFileSync(opened, 'utf8').includes('my%20report'),
        { what: 'the report in its viewer' },
    );
});

test('an export that is cancelled is answered with an error', async () => {
    const page = await clickExport();
    await shared.display.act('key', 'Escape');
    await page.until("document.getElementById('outcome').textContent === 'error'");
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
});
