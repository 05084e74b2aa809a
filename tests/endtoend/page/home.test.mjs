import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
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
        "document.querySelector('.verdict-remarks')?.textContent.includes('Checked at')",
        patience,
    );
const findings = (home) =>
    home.evaluate(
        "[...document.querySelectorAll('.finding-cards .finding-seen')].map((p) => p.innerText)",
    );

/** Shows the page anew, as a fresh start would, and waits for its check-up. */
async function reload(home) {
    await home.evaluate('void (window.isOld = true)');
    await home.tools.Page.reload();
    await home.until("document.readyState === 'complete' && !window.isOld", patience);
    await finish(home);
}

/** A home page after a check-up of a home in which dumps are not kept. */
async function checked() {
    shared.writeInHome(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const home = await shared.home();
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

    await reload(home);
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
    // The check is made again after that.
    await waitFor(async () => !(await findings(home)).includes(dumpsOff), {
        what: 'the end of the finding',
    });
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

    await reload(home);
    await home.press(texts.history.title);
    await home.shows(texts.history.looks);
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

test('a planted fault is found and fixed from a fresh start in at most three clicks', async () => {
    shared.writeInHome(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const home = await shared.home();
    const clicks = [];
    const click = async (selector) => {
        clicks.push(selector);
        await home.locator(selector).click(patience);
    };
    const card = '.finding-card.plain';
    await home.until(`document.querySelector('${card} .finding-seen')`, patience);
    expect(await home.evaluate(`document.querySelector('${card}').innerText`)).toContain(dumpsOff);
    await click(`${card} .finding-actions .primary`);
    await click('.plan .primary');
    await shared.fileWith(shared.inHome(settingsFile), (text) => text.includes('SaveDump=true'));
    await home.shows(filled(texts.repaired, { what: 'Crash dumps are kept' }), patience);
    expect(clicks.length).toBeLessThanOrEqual(3);
});

test('all fixes of one file are made with one confirmation, and each is undone alone', async () => {
    const checks = ['colour', 'size'].map((key) => ({
        id: `own.${key}`,
        title: `The ${key} is set`,
        look: { ini: '$HOME/own.ini', section: 's', key, present: false },
        finding: { text: `There is no ${key}.` },
        repairs: [
            {
                id: 'set',
                title: `Set the ${key}`,
                steps: [{ set: '$HOME/own.ini', format: 'ini', key: ['s', key], value: 'new' }],
            },
        ],
    }));
    shared.writeInHome('.config/office-assistant/checks.d/own.json', JSON.stringify({ checks }));
    const file = shared.writeInHome('own.ini', '[s]\n');
    const home = await checked();
    await home.press(texts.fixAll.start);
    await home.shows('+size=new', patience);
    await home.shows('+colour=new');
    expect(fs.readFileSync(file, 'utf8')).toBe('[s]\n');

    await home.locator('.fix-all .primary').click();
    await home.shows(filled(texts.repaired, { what: 'The colour is set' }), patience);
    await home.shows(filled(texts.repaired, { what: 'The size is set' }), patience);
    await home.until("!document.querySelector('.fix-all')", patience);
    expect(fs.readFileSync(file, 'utf8')).toBe('[s]\ncolour=new\nsize=new\n');

    await home.press(filled(pageTexts.undo.undoThis, { what: 'Set the colour' }));
    await home.shows(filled(pageTexts.undo.undone, { what: 'Set the colour' }), patience);
    expect(fs.readFileSync(file, 'utf8')).toBe('[s]\nsize=new\n');
});

test('the next start says what is different, and keeps that for the user alone', async () => {
    const { home, file } = await checkedWithOwn();
    fs.chmodSync(file, 0o600);
    await reload(home);
    await home.shows(filled(texts.sinceLast, { fixed: 1, appeared: 0 }));
    const kept = shared.inHome('.local/state/office-assistant/checkups.json');
    expect(fs.statSync(kept).mode & 0o777).toBe(0o600);
    expect(JSON.parse(fs.readFileSync(kept, 'utf8')).at(-1).found).not.toContain('own.open');

    await reload(home);
    await home.hides(texts.sinceLast.slice(0, 10));

    fs.writeFileSync(kept, 'rubbish');
    await reload(home);
    await home.hides(texts.sinceLast.slice(0, 10));
    expect(JSON.parse(fs.readFileSync(kept, 'utf8'))).toHaveLength(1);
});

test('the result is saved as a file, and sent with the feedback', async () => {
    const home = await checked();
    await home.press(texts.save);
    const file = shared.inHome('my result.txt');
    await shared.choose('Save File', file);
    await home.shows(filled(texts.saved, { file }), patience);
    expect(fs.readFileSync(file, 'utf8')).toContain(dumpsOff);

    await home.press(texts.send);
    const feedback = await shared.view('feedback');
    await feedback.until(
        `document.querySelector('textarea')?.value.includes(${JSON.stringify(dumpsOff)})`,
        patience,
    );
});

test('a program that is removed while it runs says so, and goes on once it is there again', async () => {
    const home = await shared.home();
    const tree = path.dirname(shared.suite.office);
    fs.rmSync(tree, { recursive: true });
    await home.press(pageTexts.common.check);
    await home.shows(texts.verdicts.missing, patience);
    await home.shows("the program's checks are missing");
    // The notice in place of the view has the keys.
    await home.evaluate("void helio.call('router', { page: 'about.html', type: '' })");
    await home.until('innerWidth < 400 && !document.hasFocus()');
    await shared.display.act('key', 'Escape');
    await home.until('innerWidth > 1000');

    fs.cpSync(suiteDirectory, tree, { recursive: true });
    await home.press(pageTexts.common.check);
    await home.hides(texts.verdicts.missing, patience);
    await home.evaluate("void helio.call('router', { page: 'tools.html', type: '' })");
    const view = await shared.view('tools');
    await view.shows(pageTexts.tools.groups.preload, patience);
});
