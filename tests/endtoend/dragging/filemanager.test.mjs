import fs from 'node:fs';
import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';
import { afterEach, expect, test } from 'vitest';

import { patience, viewTests } from '../page/viewtest.mjs';

const shared = viewTests();
const name = 'a report 界.docx';
let manager;

afterEach(async () => {
    if (manager) await end(manager);
    manager = null;
});

/** Shows a folder with one document in the corner of the screen. */
async function showFolder() {
    const template = path.join(shared.suite.office, 'asso_template/vyr.docx');
    shared.writeInHome(path.join('Papers', name), fs.readFileSync(template));
    const settings = '[ui]\nside_pane_mode=hidden;places\nview_mode=icon\n';
    shared.writeInHome(
        '.config/pcmanfm/default/pcmanfm.conf',
        `${settings}win_width=400\nwin_height=300\n`,
    );
    const env = shared.suite.environment(shared.display);
    manager = start('pcmanfm', ['--no-desktop', shared.inHome('Papers')], { env, stdio: 'ignore' });
    const find = () => shared.display.windows(['--class', 'pcmanfm']);
    const [window] = await waitFor(async () => (await find()).length > 0 && find(), {
        what: 'the file manager',
    });
    await shared.display.act('windowmove', '--sync', window, 0, 0);
}

/** Drags the document, the first icon, to the page, and lets it go there. */
async function dropDocument(view) {
    await view.evaluate(`document.addEventListener('dragover', () => {
        window.isOver = true;
    });`);
    const { x, y } = await view.placeOf('.drop-ground');
    const { display } = shared;
    const isHeld = async () => {
        await display.act('mousemove', x, y, 'mousemove', x + 2, y);
        return view.evaluate('Boolean(window.isOver)');
    };
    // Until the folder has been read, there is nothing to take hold of.
    await waitFor(
        async () => {
            await display.act('mousemove', 52, 116, 'mousedown', 1);
            await display.act('mousemove', 70, 130, 'mousemove', 90, 150);
            const held = await waitFor(isHeld, { timeoutMs: 2000 }).catch(() => false);
            await display.act('mouseup', 1);
            return held;
        },
        { what: 'the document above the page' },
    );
}

test.each(['missingfonts', 'feedback'])(
    'a document that is dragged from a file manager is taken by %s',
    async (page) => {
        const { view } = await shared.open(page);
        await showFolder();
        expect(await view.text()).not.toContain(name);
        await dropDocument(view);
        await view.shows(name, patience);
    },
);
