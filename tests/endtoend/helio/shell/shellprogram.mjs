import { once } from 'node:events';
import fs from 'node:fs';
import { freePort, parentOf, start, waitFor } from 'browser-driver';

import { ShellPage } from './shellpage.mjs';

const longestEnd = 90_000;

/** As one text: Chromium overwrites its processes' arguments without zeros between them. */
function commandLineOf(pid) {
    try {
        return fs.readFileSync(`/proc/${pid}/cmdline`, 'utf8');
    } catch {
        return ''; // has ended meanwhile
    }
}

/** The real window program. */
export class ShellProgram {
    #child;
    #ended;
    #pages = [];
    stdout = '';
    stderr = '';
    port;

    /** Starts the program of a scratch suite; debug: false leaves out the developer tools. */
    static async start(suite, display, args = [], { debug = true, env = {} } = {}) {
        const program = new ShellProgram();
        program.port = debug ? await freePort() : 0;
        const words = debug ? ['--debug-port', `${program.port}`, ...args] : args;
        program.#child = start(suite.program, words, {
            env: { ...suite.environment(display), ...env },
            stdio: ['ignore', 'pipe', 'pipe'],
            detached: true,
        });
        program.#ended = once(program.#child, 'close');
        for (const name of ['stdout', 'stderr']) {
            program.#child[name].setEncoding('utf8').on('data', (text) => {
                program[name] += text;
            });
        }
        return program;
    }

    /** Runs the program to its end: {status, signal, stdout, stderr}. */
    static async run(suite, display, args, options) {
        const program = await ShellProgram.start(suite, display, args, {
            debug: false,
            ...options,
        });
        try {
            return await program.waitForExit();
        } finally {
            await program.stop();
        }
    }

    get pid() {
        return this.#child.pid;
    }

    /**
     * Connects to a page of the window; Kind is the class of the returned object.
     * @param {string} [name]
     * @param {{ Kind?: typeof ShellPage, timeoutMs?: number, what?: string }} [options]
     */
    async page(name = 'index.html', { Kind = ShellPage, ...options } = {}) {
        const page = await Kind.of(this.port, name, options);
        this.#pages.push(page);
        return page;
    }

    /** The ids of Chromium's renderer processes. */
    renderers() {
        const pids = fs
            .readdirSync('/proc')
            .filter((name) => /^\d+$/.test(name))
            .map(Number);
        const isOurs = (pid) => {
            for (let at = pid; at > 1; at = parentOf(at)) {
                if (at === this.pid) return true;
            }
            return false;
        };
        return pids.filter((pid) => commandLineOf(pid).includes('--type=renderer') && isOurs(pid));
    }

    /**
     * Ends all processes of the program's group at once; none of them can put anything in order.
     * What the program has just forked for a tool would wait for it for ever.
     */
    crash() {
        process.kill(-this.pid, 'SIGKILL');
    }

    signal(name) {
        this.#child.kill(name);
    }

    async waitForExit() {
        /** @type {object} */
        let result = null;
        this.#ended.then(([status, signal]) => {
            result = { status, signal };
        });
        await waitFor(() => result, { timeoutMs: longestEnd, what: 'the end of helio-shell' });
        return { ...result, stdout: this.stdout, stderr: this.stderr };
    }

    /** Ends what still runs. */
    async stop() {
        for (const page of this.#pages) await page.close();
        const { exitCode, signalCode } = this.#child;
        if (exitCode === null && signalCode === null) this.crash();
        await this.#ended;
    }
}
