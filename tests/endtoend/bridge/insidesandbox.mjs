// Runs inside the sandbox: shows the application on a display of its own, sends the commands that
// the first argument lists as JSON from its pages, and prints what became of each.

import { once } from 'node:events';
import fs from 'node:fs';
import http from 'node:http';
import { waitFor } from 'browser-driver';

import { ShellProgram } from '../helio/shell/shellprogram.mjs';
import { VirtualDisplay } from '../helio/shell/virtualdisplay.mjs';

const callbacks = [
    'hiddentipCallBack',
    'startsearchfileCallBack',
    'searchfilefinish',
    'freshcrshpageCallBack',
    'returnvyrenvcheck',
];
const homeView = 'index.html';
const patience = { timeoutMs: 90_000 };

/** Records every call of the page's callbacks; its own functions, also later ones, still run. */
const listen = `void ${JSON.stringify(callbacks)}.forEach((name) => {
    let own = window[name];
    const record = (envelope) => {
        (window.told = window.told || []).push({ callback: name, ...envelope });
        if (own) own(envelope);
    };
    const set = (later) => void (own = later);
    Object.defineProperty(window, name, { get: () => record, set, configurable: true });
})`;

/** Writes a file that the command waits for, or waits for a file that it writes or removes. */
async function bringAbout({ write = '', file = undefined, gone = '' }) {
    if (write) fs.writeFileSync(write, 'x');
    if (file) {
        const [name, text] = file;
        await waitFor(() => fs.existsSync(name) && fs.readFileSync(name, 'utf8').includes(text), {
            what: `${text} in ${name}`,
            ...patience,
        });
    }
    if (gone) {
        await waitFor(() => !fs.existsSync(gone), { what: `the end of ${gone}`, ...patience });
    }
}

class Pages {
    #display;
    #program;
    #pages = new Map();

    constructor(display, program) {
        this.#display = display;
        this.#program = program;
    }

    /** The page with that file name: the home page or a view in the child window. */
    async #page(name) {
        if (!this.#pages.has(name)) {
            const page = await this.#program.page(name);
            await page.evaluate(listen);
            this.#pages.set(name, page);
        }
        return this.#pages.get(name);
    }

    /** Sends one command and waits for its effects; gives {envelope, told}. */
    async send(step) {
        const { page: name = homeView, command, args = {}, choose = [], callback } = step;
        const { ends, ...effects } = step;
        const page = await this.#page(name);
        const listener = await this.#page(callback?.page ?? name);
        await listener.evaluate('void (window.told = [])');
        if (ends) {
            void page.call(command, args).catch(() => {});
            return { end: await this.#program.waitForExit() };
        }
        const answer = page.call(command, args);
        for (const [title, path] of choose) await this.#answerDialog(title, path);
        const envelope = await answer;
        await bringAbout(effects);
        if (callback) {
            const name = JSON.stringify(callback.name);
            await listener.until(`told.some((one) => one.callback === ${name})`, patience);
        }
        return { envelope, told: await listener.evaluate('told') };
    }

    async #answerDialog(title, path) {
        const dialog = await this.#display.dialog(title);
        await this.#display.focused(dialog);
        await this.#display.act('key', 'ctrl+a', 'type', '--delay', '5', path);
        await this.#display.act('key', 'Return');
        await waitFor(
            async () => !(await this.#display.windows(['--name', `^${title}`])).includes(dialog),
            { what: `the end of the dialog ${title}` },
        );
    }
}

async function serveDocuments() {
    const server = http.createServer((request, answer) => {
        fs.appendFileSync('/fakecalls/server', `${request.url}\n`);
        answer.end('a document');
    });
    await once(server.listen(8080, '127.0.0.1'), 'listening');
    return server;
}

const suite = {
    program: '/suite/office/helio-shell',
    environment: ({ name }) => ({ ...process.env, DISPLAY: name }),
};
const server = await serveDocuments();
const display = await VirtualDisplay.start(process.env.HOME);
const program = await ShellProgram.start(suite, display, ['--language', 'en']);
try {
    const pages = new Pages(display, program);
    await display.windowCount(1);
    for (const step of JSON.parse(process.argv[2])) {
        const outcome = await pages.send(step).catch((error) => ({ error: error.message }));
        console.log(JSON.stringify({ command: step.command, ...outcome }));
    }
} finally {
    await program.stop();
    await display.stop();
    server.close();
    process.stderr.write(program.stderr);
}
