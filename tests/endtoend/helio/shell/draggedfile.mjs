import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';

import { suiteDirectory } from '../../paths.mjs';

/** A window of another program, all of one colour, from which a file can be dragged. */
export class DraggedFile {
    static colour = [0x12, 0x34, 0x56];

    #program;
    /** What the program has said on standard error. */
    said = '';

    constructor(file, env) {
        const program = path.join(path.dirname(suiteDirectory), 'tests/dragsource');
        this.#program = start(program, [file], { env, stdio: ['ignore', 'ignore', 'pipe'] });
        this.#program.stderr.setEncoding('utf8').on('data', (text) => {
            this.said += text;
        });
    }

    /** Has a page take what `drop` lets go above it; {names, paths} of that. */
    static async takenBy(page, drop) {
        await page.evaluate(`
            document.addEventListener('dragover', (event) => event.preventDefault());
            document.addEventListener('drop', async (event) => {
                event.preventDefault();
                const names = [...event.dataTransfer.files].map(({ name }) => name);
                const { result } = await helio.call('window.dropped');
                window.dropped = { names, ...result };
            });`);
        await drop();
        await page.until('Boolean(window.dropped)');
        return page.evaluate('window.dropped');
    }

    /** Moves the file, which the mouse holds, to the page and lets it go. */
    static async dropOn(page, display, moveThere) {
        await page.evaluate(`
            document.addEventListener('dragover', () => {
                window.isOver = true;
            });`);
        await waitFor(
            async () => {
                await moveThere();
                return page.evaluate('Boolean(window.isOver)');
            },
            { everyMs: 200, what: 'the file above the page' },
        );
        await display.act('mouseup', 1);
    }

    async stop() {
        await end(this.#program);
    }
}
