import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.home.checkup;
const settingsFile = '.config/Orvane/Office.conf';
const [oneIgnored] = texts.ignoredCount.split(' | ');
const shared = viewTests();

const finish = (home) =>
    home.until(
        "document.querySelector('.checkup-summary')?.textContent.includes('checked at')",
        patience,
    );
const findings = (home) =>
    home.evaluate(
        "[...document.querySelectorAll('.findings .finding-text > p:not([role])')].map((p) => p.innerText)",
    );

/** A home page after a check-up that found that dumps are not kept. */
async function checked() {
    shared.writeInHome(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const home = await shared.home();
    await home.press(texts.start);
    await finish(home);
    return home;
}

test('the check-up runs to its end, and what is ignored is remembered after a reload', async () => {
    const home = await checked();
    const found = await findings(home);
    expect(found).toContain(texts.findings.dumpsOff);
    await home.press(filled(texts.ignoreThis, { finding: texts.findings.dumpsOff }));
    await home.shows(oneIgnored);
    expect(await findings(home)).toEqual(found.filter((text) => text !== texts.findings.dumpsOff));

    await home.tools.Page.reload();
    await home.until("document.readyState === 'complete' && !document.querySelector('.findings')");
    await home.press(texts.start);
    await finish(home);
    await home.shows(oneIgnored);
    expect(await findings(home)).not.toContain(texts.findings.dumpsOff);
});

test('a finding is repaired on disk and checked again', async () => {
    const home = await checked();
    await home.press(texts.repairs.keepDumps);
    await shared.fileWith(shared.inHome(settingsFile), (text) => text.includes('SaveDump=true'));
    await home.shows(filled(texts.repaired, { what: texts.kinds.dumpsOff }), patience);
    expect(await findings(home)).not.toContain(texts.findings.dumpsOff);
});
