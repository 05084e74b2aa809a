import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { suiteEntries } from '../desktop/suiteentries.mjs';
import { entries, integrated } from '../plugin/config/desktoptools.mjs';
import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

/** Reading the associations starts the desktop's tool 78 times. */
const long = { timeoutMs: 240_000 };
const shared = viewTests();

const entry = (name) => `[Desktop Entry]\nType=Application\nName=${name}\nExec=true %f\n`;

test('shortcuts are put back on the desktop after a question', async () => {
    const texts = pageTexts.shortcuts;
    fs.mkdirSync(shared.inHome('Desktop'));
    fs.writeFileSync(shared.inHome('Desktop', 'own.desktop'), entry('own'));
    const { view } = await shared.open('shortcuts');
    await view.press(texts.restore.start, patience);
    await view.press(pageTexts.common.cancel);
    expect(fs.readdirSync(shared.inHome('Desktop'))).toEqual(['own.desktop']);

    await view.press(texts.sets.integrated);
    await view.press(texts.restore.start);
    await view.press(texts.restore.confirm);
    await view.shows(texts.restored, patience);
    expect(fs.readdirSync(shared.inHome('Desktop')).sort()).toEqual(['own.desktop', integrated]);
});

/** All of a folder that an undo gives back. */
function desktopNow() {
    const folder = shared.inHome('Desktop');
    return fs.readdirSync(folder).map((name) => {
        const { mode, mtimeMs } = fs.statSync(path.join(folder, name));
        return { name, mode, mtimeMs, text: fs.readFileSync(path.join(folder, name), 'utf8') };
    });
}

test('restored shortcuts are shown before and after, and undone in the history', async () => {
    const texts = pageTexts.home.checkup;
    const writer = shared.writeInHome(`Desktop/${entries.vyr}`, entry('broken'), { mode: 0o600 });
    shared.writeInHome(`Desktop/${integrated}`, entry('of the other mode'));
    fs.utimesSync(writer, 1e9, 1.1e9);
    const before = desktopNow();
    const { home, view } = await shared.open('shortcuts');
    await view.press(pageTexts.shortcuts.restore.start, patience);
    await view.shows('-Name=broken', patience);
    await view.shows(`${pageTexts.changes.kinds.remove} ${shared.inHome('Desktop', integrated)}`);
    expect(desktopNow()).toEqual(before);

    await view.press(pageTexts.shortcuts.restore.confirm);
    await view.shows(pageTexts.changes.done, patience);
    await view.shows('-Name=broken');
    await view.shows(`${pageTexts.changes.made.remove} ${shared.inHome('Desktop', integrated)}`);
    expect(desktopNow().map(({ name }) => name)).not.toContain(integrated);
    expect(fs.readFileSync(writer, 'utf8')).not.toContain('broken');

    await view.press(pageTexts.frame.back);
    await home.press(texts.history.title, patience);
    await home.shows(`${texts.areas.shortcuts}: ${texts.commands.fixfouricon}`, patience);
    await home.press(filled(pageTexts.undo.undoThis, { what: texts.commands.fixfouricon }));
    await home.shows(filled(pageTexts.undo.undone, { what: texts.commands.fixfouricon }), patience);
    expect(desktopNow()).toEqual(before);
});

/** Desktop entries of the suite, as an installation makes them known. */
function installEntries() {
    const place = path.join(shared.suite.directory, 'suite');
    for (const [name, text] of Object.entries(suiteEntries(place))) {
        shared.writeInHome(`.local/share/applications/${name}`, text);
    }
}

/** All that a home has of types and associations. */
function associationFiles() {
    const places = [shared.inHome('.local/share/mime'), shared.inHome('.config/mimeapps.list')];
    return places.flatMap((place) =>
        fs.existsSync(place) ? execFileSync('find', [place], { encoding: 'utf8' }).split('\n') : [],
    );
}

test('associations of a fresh home are repaired, verified and undone', async () => {
    const texts = pageTexts.associations;
    installEntries();
    const { view } = await shared.open('associations');
    await view.until(
        "document.querySelectorAll('.association-table tbody tr').length === 39",
        patience,
    );
    expect(associationFiles()).toEqual([]);
    await view.press(texts.repair, patience);
    await view.press(texts.confirm);
    await view.shows(filled(texts.repaired, { count: 39 }), long);
    const defaults = fs.readFileSync(shared.inHome('.config/mimeapps.list'), 'utf8');
    expect(defaults).toContain(`application/vyr-office.docx=${entries.vyr}`);
    const asked = execFileSync('gio', ['mime', 'application/vyr-office.xlsx'], {
        encoding: 'utf8',
        env: { ...process.env, HOME: shared.suite.home, LC_ALL: 'C.UTF-8' },
    });
    expect(asked.split('\n')[0]).toContain(entries.tbl);

    await view.press(filled(pageTexts.undo.undoThis, { what: texts.title }), patience);
    await view.shows(pageTexts.undo.undone.split('{')[0].trim(), patience);
    await view.shows(filled(texts.problems.split(' | ')[2], { count: 39 }), long);
    expect(associationFiles()).toEqual([]);
}, 900_000);

test('one association is repaired alone', async () => {
    const texts = pageTexts.associations;
    installEntries();
    const { view } = await shared.open('associations');
    await view.press(filled(texts.fixThis, { extension: '.docx' }), patience);
    await view.press(texts.confirm);
    await view.shows(filled(texts.repairedOne, { extension: '.docx' }), long);
    const defaults = fs.readFileSync(shared.inHome('.config/mimeapps.list'), 'utf8');
    expect(defaults).toContain('application/vyr-office.docx=');
    expect(defaults).not.toContain('application/vyr-office.xlsx=');
}, 900_000);

test('a tool that hangs leaves the window usable, and can be cancelled', async () => {
    const fakes = shared.inHome('fakes');
    const begun = shared.inHome('begun');
    shared.writeInHome('fakes/gio', `#!/bin/sh\necho $$ > '${begun}'\nexec sleep 600\n`, {
        mode: 0o755,
    });
    const { view } = await shared.open('associations', {
        env: { PATH: `${fakes}:${process.env.PATH}` },
    });
    const id = Number(await shared.fileWith(begun, (text) => text.endsWith('\n')));
    // A window that waited for the tool would answer nothing.
    await view.shows(pageTexts.associations.reading, patience);
    await view.press(pageTexts.common.cancel, patience);
    await view.shows(pageTexts.failure.stopped, patience);
    await waitFor(() => !fs.existsSync(`/proc/${id}`), { what: 'the end of the tool' });
});

/** What the window keeps for itself; the last one has the library's scripts while it runs. */
const own = [
    '.cache/',
    '.config/office-assistant/',
    '.local/share/office-assistant/',
    '.local/state/office-assistant/',
    '.local/share/Orvane/tmp/officeassis_script/',
    // Qt 6 begins there, before it can be told where.
    '.local/share/helio-shell/',
];
/** What views say as long as they are still looking. */
const looking = Object.values(pageTexts)
    .flatMap(({ reading, readingKept, readingVariables, checking, askingUser }) => [
        reading,
        readingKept,
        readingVariables,
        checking,
        askingUser,
    ])
    .filter(Boolean);

/** All that is in a folder, without what the window keeps for itself and the way to it. */
function contents(folder, way = '') {
    return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
        const name = way + entry.name + (entry.isDirectory() ? '/' : '');
        const whole = path.join(folder, entry.name);
        if (own.includes(name)) return [];
        if (entry.isDirectory()) {
            const isWay = own.some((one) => one.startsWith(name));
            return [...(isWay ? [] : [name]), ...contents(whole, name)];
        }
        const { mode, mtimeMs } = fs.lstatSync(whole);
        return [`${name} ${mode.toString(8)} ${mtimeMs} ${fs.readFileSync(whole, 'utf8')}`];
    });
}

test('a look at every view makes no file or folder in a home, and changes none', async () => {
    shared.writeInHome('.config/Orvane/Office.conf', '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const before = contents(shared.suite.home);
    const { home, view } = await shared.open('about');
    await home.shows(pageTexts.home.sidebar.home, patience);
    const names = await home.evaluate(
        "[...document.querySelectorAll('.side-item')].map((item) => item.innerText.trim())",
    );
    expect(names).toContain(pageTexts.shortcuts.title);
    for (const name of names.filter((one) => one !== pageTexts.home.sidebar.home)) {
        await home.press(name);
        const hasLooked = `document.querySelector('.title-bar h1')?.innerText.trim()
            === ${JSON.stringify(name)} && document.querySelector('.frame:not([aria-busy])')
            && !${JSON.stringify(looking)}.some((text) => document.body.innerText.includes(text))`;
        // Between two documents, which the views may have, there is none to ask.
        await waitFor(() => view.evaluate(hasLooked).catch(() => false), {
            ...patience,
            what: `what “${name}” has seen`,
        });
    }
    expect(contents(shared.suite.home)).toEqual(before);
}, 300_000);
