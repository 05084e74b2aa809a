import os from 'node:os';
import { expect, test } from 'vitest';

import { TEXTS } from './texts.mjs';
import { PATIENCE, viewTests } from './viewtest.mjs';

const texts = TEXTS.sysinfo;
const shared = viewTests();

test('the system report tells of this machine, filters, and is exported', async () => {
    const home = await shared.home({ env: { HELIO_TEST_MARK: 'seen in the report' } });
    await home.press(TEXTS.home.report.view);
    const view = await shared.view('sysinfo');
    await view.shows(os.release(), PATIENCE);
    await view.evaluate(`void [...document.querySelectorAll('[role="tab"]')]
        .find((tab) => tab.textContent.includes(${JSON.stringify(texts.sections.environment)}))
        .click()`);
    await view.fill(TEXTS.common.filter, 'HELIO_TEST_MARK');
    await view.shows('seen in the report', PATIENCE);

    await view.press(TEXTS.report.export);
    const report = shared.inHome('report.txt');
    await shared.choose('Save File', report);
    await view.shows(TEXTS.export.done, PATIENCE);
    expect(await shared.fileWith(report, Boolean)).toContain('seen in the report');
});
