import { waitFor } from 'browser-driver';
import { afterAll, afterEach, beforeAll } from 'vitest';

import { ScratchSuite } from './scratchsuite.mjs';
import { ShellProgram } from './shellprogram.mjs';
import { VirtualDisplay } from './virtualdisplay.mjs';

/** The display and the suite that the tests of one file share; programs end with their test. */
export function windowTests() {
    const shared = {
        display: /** @type {VirtualDisplay} */ (null),
        suite: /** @type {ScratchSuite} */ (null),
        start,
        reloadByKey,
    };
    const programs = [];

    beforeAll(async () => {
        shared.suite = ScratchSuite.create();
        shared.display = await VirtualDisplay.start(shared.suite.home);
    });

    afterEach(async () => {
        for (const program of programs.splice(0)) await program.stop();
    });

    afterAll(async () => {
        await shared.display?.stop();
        shared.suite?.dispose();
    });

    /** Starts the window program. */
    async function start(args, options) {
        const program = await ShellProgram.start(shared.suite, shared.display, args, options);
        programs.push(program);
        return program;
    }

    /** Presses the notice's focused button until the page is back. */
    async function reloadByKey(program, window) {
        await shared.display.focused(window);
        const page = await waitFor(
            async () => {
                await shared.display.act('key', 'space');
                return program.page('index.html', { timeoutMs: 5000 }).catch(() => null);
            },
            { timeoutMs: 90_000, what: 'the page after its reload' },
        );
        await page.until('Boolean(window.helio)');
        return page;
    }
    return shared;
}
