import { execFile } from 'node:child_process';
import { promisify } from 'node:util';
import { end, start, waitFor } from 'browser-driver';

const run = promisify(execFile);

/** A private X display with a window manager, keyboard and mouse. */
export class VirtualDisplay {
    #server;
    #manager;

    /** As in the variable DISPLAY. */
    name;

    static async start(home) {
        const display = new VirtualDisplay();
        try {
            await display.#startServer();
            await display.#startManager(home);
            await display.#tryKeys();
        } catch (error) {
            await display.stop();
            throw error;
        }
        return display;
    }

    async #startServer() {
        // Without -noreset the server resets when its last client leaves, and drops a client that
        // is just connecting. Without -r a key repeats if its release is late.
        const words = [
            '-displayfd',
            '3',
            '-screen',
            '0',
            '1400x1000x24',
            '-nolisten',
            'tcp',
            '-noreset',
            '-r',
        ];
        this.#server = start('Xvfb', words, { stdio: ['ignore', 'ignore', 'pipe', 'pipe'] });
        let complaints = '';
        this.#server.stderr.on('data', (chunk) => {
            complaints += chunk;
        });
        let number = '';
        this.#server.stdio[3].on('data', (chunk) => {
            number += chunk;
        });
        let hasEnded = false;
        this.#server.once('close', () => {
            hasEnded = true;
        });
        await waitFor(
            () => {
                if (hasEnded) throw new Error(`the virtual display has ended: ${complaints}`);
                return number.endsWith('\n');
            },
            { what: 'the virtual display' },
        );
        this.name = `:${number.trim()}`;
    }

    async #startManager(home) {
        const env = { PATH: process.env.PATH, HOME: home, DISPLAY: this.name };
        this.#manager = start('openbox', ['--sm-disable'], { stdio: 'ignore', env });
        const isThere = async () =>
            /window id/.test(await this.#output('xprop', ['-root', '_NET_SUPPORTING_WM_CHECK']));
        await waitFor(isThere, { what: 'the window manager' });
    }

    /**
     * The first key event changes the keyboard mapping, and the window manager then releases its
     * key bindings for a moment. So this presses the key that shows the desktop until it works.
     */
    async #tryKeys() {
        // Usually enough, so that the key below works at once.
        await this.act('key', 'Shift_L', 'sleep', 0.2);
        for (const shown of [1, 0]) {
            const isShown = async () =>
                (await this.#output('xprop', ['-root', '_NET_SHOWING_DESKTOP'])).endsWith(
                    `= ${shown}\n`,
                );
            await waitFor(
                async () => {
                    await this.act('key', 'super+d');
                    return waitFor(isShown, { timeoutMs: 5000 }).catch(() => false);
                },
                { what: 'a key of the window manager' },
            );
        }
    }

    /** Runs xdotool with these arguments. */
    async act(...words) {
        return this.#output('xdotool', words.map(String));
    }

    /** The ids of the program's visible windows; `by` replaces xdotool's search arguments. */
    async windows(by = ['--class', 'helio-shell']) {
        const ids = await waitFor(() => this.#found(by), { what: 'a look at the windows' });
        return ids.split('\n').filter(Boolean);
    }

    /** What xdotool finds; null if a window disappeared during the search. */
    async #found(by) {
        try {
            return `${await this.act('search', '--onlyvisible', ...by)}\n`;
        } catch (error) {
            // How xdotool reports that there is none.
            if (error.code === 1 && error.stderr === '') return '\n';
            if (/BadWindow/.test(error.stderr)) return null;
            throw error;
        }
    }

    /** Waits until the program shows that many windows; gives their ids. */
    async windowCount(count) {
        return waitFor(
            async () => {
                const ids = await this.windows();
                return ids.length === count && ids;
            },
            { what: `${count} windows` },
        );
    }

    /** The dialog with that title, once it is there. */
    async dialog(title) {
        const found = await waitFor(
            async () => {
                const ids = await this.windows(['--name', `^${title}`]);
                return ids.length > 0 && ids;
            },
            { what: `the dialog ${title}` },
        );
        return found[0];
    }

    /** Place and size of a window: {x, y, width, height}. */
    async geometry(window) {
        const text = await this.act('getwindowgeometry', '--shell', window);
        const value = (name) => Number(new RegExp(`^${name}=(-?\\d+)`, 'm').exec(text)[1]);
        return { x: value('X'), y: value('Y'), width: value('WIDTH'), height: value('HEIGHT') };
    }

    /** Waits until the window has the keyboard. */
    async focused(window) {
        const isFocused = async () =>
            (await this.act('getwindowfocus').catch(() => '')).trim() === window;
        await waitFor(isFocused, { what: `the focus of window ${window}` });
    }

    async stop() {
        for (const child of [this.#manager, this.#server]) {
            if (child) await end(child);
        }
    }

    async #output(program, args) {
        const env = { PATH: process.env.PATH, DISPLAY: this.name, LANG: 'C.UTF-8' };
        const { stdout } = await run(program, args, { env, timeout: 60_000 });
        return stdout;
    }
}
