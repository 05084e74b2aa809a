import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { promisify } from 'node:util';
import { end, freePort, start, waitFor } from 'browser-driver';
import { afterAll, beforeAll, expect, test } from 'vitest';

import { ShellPage } from '../helio/shell/shellpage.mjs';
import { VirtualDisplay } from '../helio/shell/virtualdisplay.mjs';
import { repository, suiteDirectory } from '../paths.mjs';

const build = path.dirname(suiteDirectory);
const components = ['dev', 'plugin', 'page'];

/** Runs a program to its end. The test runner would give up a process that blocks for a minute. */
const run = (program, ...args) => promisify(execFile)(program, args, { timeout: 400_000 });

/** The example, built with what is installed for other shells, without libhelio.so. */
class ExampleShell {
    directory = fs.mkdtempSync(path.join(os.tmpdir(), 'exampleshell-'));
    home = path.join(this.directory, 'home');
    program = path.join(this.directory, 'build/example-shell');
    #child;
    #pages = [];
    #port;
    stderr = '';

    async build() {
        const prefix = path.join(this.directory, 'prefix');
        for (const component of components) {
            await run('cmake', '--install', build, '--component', component, '--prefix', prefix);
        }
        const source = path.join(repository, 'examples/shell');
        const target = path.dirname(this.program);
        await run(
            'cmake',
            ...['-S', source, '-B', target, '-G', 'Ninja', `-DCMAKE_PREFIX_PATH=${prefix}`],
            '-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror',
            ...(fs.existsSync('/usr/bin/ccache') ? ['-DCMAKE_CXX_COMPILER_LAUNCHER=ccache'] : []),
        );
        await run('cmake', '--build', target);
    }

    async start(display) {
        this.#port = await freePort();
        fs.mkdirSync(this.home);
        fs.mkdirSync(path.join(this.directory, 'run'), { mode: 0o700 });
        this.#child = start(this.program, [], {
            env: {
                PATH: process.env.PATH,
                HOME: this.home,
                XDG_RUNTIME_DIR: path.join(this.directory, 'run'),
                DBUS_SESSION_BUS_ADDRESS: 'disabled:',
                DISPLAY: display.name,
                LANG: 'C.UTF-8',
                QTWEBENGINE_REMOTE_DEBUGGING: `${this.#port}`,
                // For containers, in which the tests run as root.
                ...(process.getuid() === 0 && { QTWEBENGINE_DISABLE_SANDBOX: '1' }),
            },
            stdio: ['ignore', 'ignore', 'pipe'],
        });
        this.#child.stderr.setEncoding('utf8').on('data', (text) => {
            this.stderr += text;
        });
    }

    async page(name) {
        const page = await ShellPage.of(this.#port, name);
        this.#pages.push(page);
        return page;
    }

    /** The files that the running program has mapped. */
    get mappedFiles() {
        return fs.readFileSync(`/proc/${this.#child.pid}/maps`, 'utf8');
    }

    get exitCode() {
        return this.#child.exitCode;
    }

    async dispose() {
        for (const page of this.#pages) await page.close();
        if (this.#child) await end(this.#child);
        fs.rmSync(this.directory, { recursive: true, force: true, maxRetries: 20 });
    }
}

const shell = new ExampleShell();
let display;
let main;

beforeAll(async () => {
    await shell.build();
    display = await VirtualDisplay.start(shell.directory);
    await shell.start(display);
    main = await shell.page('index.html');
    await main.until('Boolean(window.helio)');
}, 480_000);

afterAll(async () => {
    await shell.dispose();
    await display?.stop();
});

const windows = () => display.windows(['--class', 'example-shell']);

test('the plug-in uses the library of that name beside the program, and no other', () => {
    const libraries = new Set(shell.mappedFiles.match(/\S*\/libhelio\.so$/gm));
    expect([...libraries]).toEqual([path.join(path.dirname(shell.program), 'libhelio.so')]);
    expect(shell.mappedFiles).toContain('/libofficeassistant.so');
});

test.each([
    ['mouseRelease', undefined, {}],
    ['feedbacktovyr', { infopage: 'print' }, {}],
    ['getcollectionpage', undefined, { result: { page: 'print', file: '' } }],
    ['stratcheckenv', undefined, { result: expect.any(Object) }],
    ['getcpuinfo', undefined, { result: expect.any(Object) }],
    ['getmemoryinfo', undefined, { result: expect.any(Object) }],
    ['getcomputermemory', undefined, { result: expect.any(Object) }],
    ['getDumpState', undefined, { result: { enable: expect.any(Boolean), feedback: false } }],
    ['getupdatesupport', undefined, { result: false }],
    ['getdesktopiconfile', undefined, { result: expect.any(Object) }],
    ['inputcheck', undefined, { result: expect.any(String) }],
    ['copytoclipboard', { verification: 'copied' }, { result: 'success' }],
])('answers %s', async (command, args, answer) => {
    expect(await main.call(command, args)).toEqual(answer);
});

test('refuses what is not a command', async () => {
    await expect(main.call('deleteLater')).rejects.toThrow('unknown command: deleteLater');
});

test('finds files, and says when the search has ended', async () => {
    fs.writeFileSync(path.join(shell.home, 'a 界 [file].txt'), '');
    await main.evaluate(`window.hits = [];
        window.startsearchfileCallBack = ({ result }) => hits.push(result);
        window.searchfilefinish = () => { window.ended = true; };`);
    await main.call('startsearchfile', { keyword: '界 [FILE' });
    await main.until('window.ended');
    const base64 = (text) => Buffer.from(text).toString('base64');
    expect(await main.evaluate('hits')).toEqual([
        { [base64('a 界 [file].txt')]: base64(shell.home) },
    ]);
});

test('opens a view in the child window, and closes it', async () => {
    await main.evaluate(`window.tips = [];
        window.hiddentipCallBack = ({ result }) => tips.push(result);`);
    await main.call('router', { page: 'search.html', type: 'searchfile' });
    await waitFor(async () => (await windows()).length === 2, { what: 'the child window' });
    const child = await shell.page('search.html');
    await child.until('Boolean(window.helio)');
    expect(await child.call('getcollectionpage')).toEqual({ result: { page: '' } });
    await child.call('closechildwindow', { type: 'searchfile' });
    await waitFor(async () => (await windows()).length === 1, { what: 'its end' });
    expect(await main.evaluate('tips')).toEqual(['show', 'hide']);
});

test('a child window closed from outside lets its view stop what it does', async () => {
    const [mainWindow] = await windows();
    await main.call('router', { page: 'print.html', type: '' });
    await waitFor(async () => (await windows()).length === 2, { what: 'the child window' });
    const child = await shell.page('print.html');
    await child.until('Boolean(window.helio)');
    await child.evaluate(`addEventListener('helioclose', () => { window.asked = true; })`);
    const childWindow = (await windows()).find((id) => id !== mainWindow);
    await display.focused(childWindow);
    await display.act('key', 'alt+F4');
    await child.until('window.asked');
    await waitFor(async () => (await windows()).length === 1, { what: 'its end' });
});

test('does not leave its pages', async () => {
    await main.evaluate(`location.href = 'file:///etc/passwd'`);
    await main.evaluate(`location.href = 'data:text/html,other'`);
    expect(await main.call('mouseRelease')).toEqual({});
    expect(await main.evaluate('location.pathname')).toMatch(/\/html\/index\.html$/);
});

test('shows nothing but its pages, in frames and pictures too', async () => {
    const outside = path.join(shell.home, 'outside.svg');
    fs.writeFileSync(outside, '<svg xmlns="http://www.w3.org/2000/svg" width="1" height="1"/>');
    const look = (address) =>
        main.evaluate(`new Promise((resolve) => {
            const image = new Image();
            image.onload = () => resolve('shown');
            image.onerror = () => resolve('refused');
            image.src = ${JSON.stringify(address)};
        })`);
    const data = `data:image/svg+xml;base64,${fs.readFileSync(outside).toString('base64')}`;
    expect(await look(data)).toBe('shown');
    expect(await look(`file://${outside}`)).toBe('refused');
    const frame = await main.evaluate(`new Promise((resolve) => {
        const frame = document.createElement('iframe');
        frame.onload = () => resolve(frame.contentDocument?.body.textContent ?? 'foreign');
        frame.src = 'file:///etc/passwd';
        document.body.append(frame);
        setTimeout(resolve, 500, 'nothing');
    })`);
    expect(frame).not.toContain('root');
});

test('ends when the page closes its window', async () => {
    main.call('closemainwindow').catch(() => {});
    await waitFor(() => shell.exitCode !== null, { what: 'the end' });
    expect(shell.exitCode).toBe(0);
});
