import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { afterAll, afterEach, beforeAll, beforeEach } from 'vitest';

import { ScratchSuite } from '../helio/shell/scratchsuite.mjs';
import { ShellProgram } from '../helio/shell/shellprogram.mjs';
import { VirtualDisplay } from '../helio/shell/virtualdisplay.mjs';
import { pageTexts } from './texts.mjs';
import { ViewPage } from './viewpage.mjs';

/** How long a view and the programs that it runs may take on a busy machine. */
export const patience = { timeoutMs: 90_000 };

/** Whether the main page is the sidebar beside a view, and not whole. */
export const sidebarShown = "Boolean(document.querySelector('.side-bar')?.offsetParent)";

/** The display that the tests of one file share; every test has a suite and a home of its own. */
export function viewTests() {
    const shared = {
        display: /** @type {VirtualDisplay} */ (null),
        suite: /** @type {ScratchSuite} */ (null),
        program: /** @type {ShellProgram} */ (null),
    };
    let scratch;

    beforeAll(async () => {
        scratch = ScratchSuite.create({ views: true });
        shared.display = await VirtualDisplay.start(scratch.home);
    });

    beforeEach(() => {
        shared.suite = ScratchSuite.create({ views: true });
    });

    afterEach(async () => {
        await shared.program?.stop();
        shared.program = null;
        shared.suite.dispose();
    });

    afterAll(async () => {
        await shared.display?.stop();
        scratch?.dispose();
    });

    /** Starts the application; gives its home page, after the check-up of the start unless told. */
    shared.home = async ({ args = [], env = {}, settled = true } = {}) => {
        // The scripts use /home/$USER as the home directory and ignore HOME.
        const user = `..${shared.suite.home}`;
        shared.program = await ShellProgram.start(
            shared.suite,
            shared.display,
            ['--language', 'en', ...args],
            { env: { USER: user, ...env } },
        );
        const home = await shared.program.page('index.html', { Kind: ViewPage });
        // What follows the check-up moves when it ends, and a click would miss it.
        if (settled) {
            await home.until(
                "document.querySelector('.checkup-start') && !document.querySelector('.progress-ground')",
                patience,
            );
        }
        return home;
    };

    /** Opens a view by its tile on the home page: {home, view}. */
    shared.open = async (name, options) => {
        const home = await shared.home(options);
        await home.shows(pageTexts[name].title);
        await home.evaluate(`void (window.tile = [...document.querySelectorAll('button.tool')]
            .find((button) => button.querySelector('strong').textContent
                === ${JSON.stringify(pageTexts[name].title)})
            .setAttribute('aria-label', 'the tile'))`);
        await home.press('the tile');
        return { home, view: await shared.view(name) };
    };

    /** The view that is opening beside the home page, once it takes keys. */
    shared.view = async (name) => {
        const view = await shared.program.page(`${name}.html`, { Kind: ViewPage });
        await view.shows(pageTexts[name].title);
        // A document of its own shows its title before its script runs, and Chromium drops the keys
        // that come before it has drawn.
        await view.until("document.querySelector('.outline') === null", patience);
        await view.drawn();
        return view;
    };

    /** Answers the file dialog of that title with a path. */
    shared.choose = async (title, file) => {
        await shared.display.focused(await shared.display.dialog(title));
        await shared.display.act('key', 'ctrl+a', 'type', '--delay', '5', file);
        await shared.display.act('key', 'Return');
    };

    /** A path in the user's home. */
    shared.inHome = (...names) => path.join(shared.suite.home, ...names);

    shared.writeInHome = (name, text, options) => write(shared.inHome(name), text, options);
    shared.writeInOffice = (name, text, options) =>
        write(path.join(shared.suite.office, name), text, options);

    /** Waits until a file's text satisfies a condition; gives the text. */
    shared.fileWith = (file, condition) =>
        waitFor(
            () => {
                const text = fs.existsSync(file) ? fs.readFileSync(file, 'utf8') : '';
                return condition(text) && text;
            },
            { what: `the expected text in ${path.basename(file)}`, ...patience },
        );
    return shared;
}

function write(file, text, options) {
    fs.mkdirSync(path.dirname(file), { recursive: true });
    fs.writeFileSync(file, text, options);
    return file;
}
