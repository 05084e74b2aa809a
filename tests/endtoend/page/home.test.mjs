import fs from 'node:fs';
import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.home.checkup;
const settingsFile = '.config/Orvane/Office.conf';
const [oneIgnored] = texts.ignoredCount.split(' | ');
const shared = viewTests();

/** A check as an administrator or a user writes it. */
const ownCheck = {
    id: 'own.open',
    title: 'Only you can change the list',
    look: { file: '$HOME/list', mode: { has: 'o+w' } },
    finding: { state: 'bad', text: 'Everybody can change {path}.' },
    repairs: [{ id: 'close', title: 'Close the list', steps: [{ rights: '{path}', mode: 'o-w' }] }],
};
const dumpsOff = 'Crash dumps are not kept, so the cause of a crash is hard to find.';

const finish = (home) =>
    home.until(
        "document.querySelector('.checkup-summary')?.textContent.includes('checked at')",
        patience,
    );
const findings = (home) =>
    home.evaluate(
        "[...document.querySelectorAll('.findings .finding-text > div > p:first-child')].map((p) => p.innerText)",
    );

/** A home page after a check-up of a home in which dumps are not kept. */
async function checked() {
    shared.writeInHome(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const home = await shared.home();
    await home.press(texts.start);
    await finish(home);
    return home;
}

/** A home page after a check-up that found what the own check looks for; the file is the list. */
async function checkedWithOwn() {
    shared.writeInHome('.config/office-assistant/checks.d/own.json', JSON.stringify(ownCheck));
    const file = shared.writeInHome('list', 'one\n');
    fs.chmodSync(file, 0o666);
    return { home: await checked(), file, mode: () => fs.statSync(file).mode & 0o777 };
}

test('the check-up runs to its end, and what is ignored is remembered after a reload', async () => {
    const home = await checked();
    const found = await findings(home);
    expect(found).toContain(dumpsOff);
    await home.press(filled(texts.ignoreThis, { finding: dumpsOff }));
    await home.shows(oneIgnored);
    expect(await findings(home)).toEqual(found.filter((text) => text !== dumpsOff));

    await home.tools.Page.reload();
    await home.until("document.readyState === 'complete' && !document.querySelector('.findings')");
    await home.press(texts.start);
    await finish(home);
    await home.shows(oneIgnored);
    expect(await findings(home)).not.toContain(dumpsOff);
});

test('a repair shows what it changes, is made on disk and checked again', async () => {
    const home = await checked();
    const before = fs.readFileSync(shared.inHome(settingsFile), 'utf8');
    await home.press('Keep dumps…');
    await home.shows('-common\\CrashDump\\SaveDump=false');
    await home.shows('+common\\CrashDump\\SaveDump=true');
    expect(fs.readFileSync(shared.inHome(settingsFile), 'utf8')).toBe(before);

    await home.press('Keep dumps');
    await shared.fileWith(shared.inHome(settingsFile), (text) => text.includes('SaveDump=true'));
    await home.shows(filled(texts.repaired, { what: 'Crash dumps are kept' }), patience);
    expect(await findings(home)).not.toContain(dumpsOff);
});

test('a repair is undone in the history, also by a page that did not make it', async () => {
    const { home, file, mode } = await checkedWithOwn();
    await home.shows(`Everybody can change ${file}.`);
    await home.press('Close the list…');
    await home.shows(filled(pageTexts.changes.kinds.rights, { rights: 'rw-rw-r--' }));
    expect(mode()).toBe(0o666);
    await home.press('Close the list');
    await home.shows(filled(texts.repaired, { what: 'Only you can change the list' }), patience);
    expect(mode()).toBe(0o664);

    await home.tools.Page.reload();
    await home.until("document.readyState === 'complete' && !document.querySelector('.findings')");
    await home.press(texts.history.title);
    await home.shows(texts.history.states.applied);
    await home.press(filled(pageTexts.undo.undoThis, { what: 'Close the list' }));
    await home.shows(filled(pageTexts.undo.undone, { what: 'Close the list' }), patience);
    expect(mode()).toBe(0o666);
    expect(fs.readFileSync(file, 'utf8')).toBe('one\n');
});

test('what was changed since its plan was shown is not repaired', async () => {
    const { home, mode } = await checkedWithOwn();
    await home.press('Keep dumps…');
    await home.shows('+common\\CrashDump\\SaveDump=true');
    shared.writeInHome(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=0\n');
    await home.press('Keep dumps');
    await home.shows(texts.results.refused.split('{')[0], patience);
    expect(fs.readFileSync(shared.inHome(settingsFile), 'utf8')).toContain('SaveDump=0');
    expect(mode()).toBe(0o666);
});
