import { once } from 'node:events';
import fs from 'node:fs';
import net from 'node:net';

import { waitFor } from '../../waitfor.mjs';
import { end, start } from './process.mjs';
import { ShellPage } from './shellpage.mjs';

const LONGEST_END = 90_000;

/** Ten ports for each process that runs tests, below those that the kernel gives to anybody. */
const OWN_PORTS = Array.from({ length: 10 }, (_, at) => 10_000 + 10 * (process.pid % 2_000) + at);

/** A port that nobody listens on, nor will before the program does that is told of it. */
async function freePort() {
    for (let tries = 0; tries < OWN_PORTS.length; tries += 1) {
        const port = OWN_PORTS.shift();
        OWN_PORTS.push(port);
        const server = net.createServer();
        try {
            await once(server.listen(port, '127.0.0.1'), 'listening');
        } catch {
            continue; // somebody has it
        }
        server.close();
        await once(server, 'close');
        return port;
    }
    throw new Error(`all of the ports ${OWN_PORTS.join(' ')} are taken`);
}

/** One text: Chromium's processes write over their own arguments, without zeros between them. */
function commandLineOf(pid) {
    try {
        return fs.readFileSync(`/proc/${pid}/cmdline`, 'utf8');
    } catch {
        return ''; // has ended meanwhile
    }
}

function parentOf(pid) {
    try {
        return Number(/\) \S (\d+)/.exec(fs.readFileSync(`/proc/${pid}/stat`, 'utf8'))[1]);
    } catch {
        return 0;
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
        });
        program.#ended = once(program.#child, 'close');
        for (const name of ['stdout', 'stderr'])
            program.#child[name].setEncoding('utf8').on('data', (text) => {
                program[name] += text;
            });
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

    async page(name = 'index.html', options = {}) {
        const page = await ShellPage.of(this.port, name, options);
        this.#pages.push(page);
        return page;
    }

    /** The ids of Chromium's processes that show pages. */
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

    signal(name) {
        this.#child.kill(name);
    }

    async waitForExit() {
        const ended = this.#ended.then(([status, signal]) => ({ status, signal }));
        let result = null;
        ended.then((value) => {
            result = value;
        });
        await waitFor(() => result, { timeoutMs: LONGEST_END, what: 'the end of helio-shell' });
        return { ...result, stdout: this.stdout, stderr: this.stderr };
    }

    /** Ends what still runs. */
    async stop() {
        for (const page of this.#pages) await page.close();
        await end(this.#child);
        await this.#ended;
    }
}
