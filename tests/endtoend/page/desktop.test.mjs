import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
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

test('associations are repaired with the desktop’s tools and listed until they settle', async () => {
    const texts = pageTexts.associations;
    const allRepaired = filled(texts.repaired, { count: 39 });
    const place = path.join(shared.suite.directory, 'suite');
    for (const [name, text] of Object.entries(suiteEntries(place))) {
        shared.writeInHome(`.local/share/applications/${name}`, text);
    }
    const { view } = await shared.open('associations');
    await view.until(
        "document.querySelectorAll('.association-table tbody tr').length === 39",
        patience,
    );
    fs.mkdirSync(shared.inHome('.local/share/mime/packages'), { recursive: true });
    await view.press(texts.repair, patience);
    await view.press(texts.confirm);
    await shared.fileWith(shared.inHome('.local/share/mime/packages/Override.xml'), (text) =>
        text.includes('application/vyr-office.docx'),
    );
    // A desktop does this by itself; the repair then assigns the new types to the suite.
    execFileSync('update-mime-database', [shared.inHome('.local/share/mime')], {
        env: { ...process.env, HOME: shared.suite.home },
    });
    const ended = await view.showsOneOf([allRepaired, texts.notRepaired], long);
    if (ended === texts.notRepaired) {
        // The update came after the repair had already assigned the types.
        await view.press(texts.repair, long);
        await view.press(texts.confirm);
        await view.shows(allRepaired, long);
    }
    const defaults = fs.readFileSync(shared.inHome('.config/mimeapps.list'), 'utf8');
    expect(defaults).toContain(`application/vyr-office.docx=${entries.vyr}`);
}, 900_000);
