import fs from 'node:fs';
import path from 'node:path';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { ScratchSuite } from './scratchsuite.mjs';
import { ShellProgram } from './shellprogram.mjs';
import { windowTests } from './windowtest.mjs';

const shared = windowTests();
let suite;

beforeEach(() => {
    suite = ScratchSuite.create();
});

afterEach(() => suite.dispose());

const run = (args, options) => ShellProgram.run(suite, shared.display, args, options);

/** The message is the program's own, not a crash of Qt or Chromium. */
async function expectRefusal(run, status, message) {
    const end = await run;
    expect(end).toMatchObject({ status, signal: null, stdout: '' });
    expect(end.stderr).toMatch(message);
    expect(end.stderr).not.toMatch(/ERROR|FATAL|Aborted/);
    expect(await shared.display.windows()).toEqual([]);
}

test('without the page directory the program says so and fails', async () => {
    fs.rmSync(suite.pages, { recursive: true });
    await expectRefusal(run([]), 3, /^helio-shell: the directory of the pages is missing: /m);
});

test('without the start page the program says so and fails', async () => {
    fs.rmSync(path.join(suite.pages, 'index.html'));
    await expectRefusal(run([]), 3, /^helio-shell: the start page is missing: .*index\.html$/m);
    await expectRefusal(run(['--page', 'none.html']), 3, /the start page is missing: .*none\.html/);
});

test('a start page outside of the page directory is refused', async () => {
    fs.writeFileSync(path.join(suite.addon, 'officeassistant/resource/other.html'), '');
    await expectRefusal(run(['--page', '../other.html']), 3, /outside the directory of the pages/);
});

test('without the library the program says so and fails', async () => {
    fs.rmSync(path.join(suite.addon, 'libofficeassistant.so'));
    await expectRefusal(run([]), 3, /^helio-shell: .*libofficeassistant\.so/m);
});

test('a file that is not a library is refused', async () => {
    fs.writeFileSync(path.join(suite.addon, 'libofficeassistant.so'), 'no library');
    await expectRefusal(run([]), 3, /^helio-shell: .*libofficeassistant\.so/m);
});

test("without Chromium's helper the program says so and fails", async () => {
    const env = { QTWEBENGINEPROCESS_PATH: '/nowhere/QtWebEngineProcess' };
    const refusal = /missing: \/nowhere\/QtWebEngineProcess .* package libqt\dwebenginecore\d/;
    await expectRefusal(run([], { env }), 3, refusal);
});

test('without a display the program says so and fails', async () => {
    const end = await ShellProgram.run(suite, null, []);
    expect(end).toMatchObject({ status: 3, signal: null });
    expect(end.stderr).toBe('helio-shell: there is no display to show a window on\n');
});

test.each([
    [['--nothing'], /Unknown option 'nothing'/],
    [['page.html'], /unexpected argument: page\.html/],
    [['--theme', 'blue'], /--theme must be light or dark/],
    [['--language', 'no language'], /--language needs a language/],
    [['--graphics', 'pencil'], /--graphics must be device or processor/],
    [['--debug-port', '0'], /--debug-port needs a port number/],
    [['--debug-port', '70000'], /--debug-port needs a port number/],
    [['--screenshot'], /Missing value after '--screenshot'/],
])('the options %j are wrong usage', async (args, message) => {
    await expectRefusal(run(args), 2, message);
});

test('help and version need no display', async () => {
    const help = await ShellProgram.run(suite, null, ['--help']);
    expect(help).toMatchObject({ status: 0, stderr: '' });
    for (const option of [
        '--help',
        '--version',
        '--page',
        '--theme',
        '--language',
        '--graphics',
        '--screenshot',
        '--debug-port',
    ]) {
        expect(help.stdout).toContain(option);
    }
    const version = await ShellProgram.run(suite, null, ['--version']);
    expect(version.status).toBe(0);
    expect(version.stdout).toMatch(/^helio-shell \d+\.\d+/);
});

test('a picture of the window is a PNG of its size, and the program ends', async () => {
    const picture = path.join(suite.home, 'window.png');
    expect(await run(['--screenshot', picture])).toMatchObject({ status: 0, signal: null });
    const bytes = fs.readFileSync(picture);
    expect(bytes.subarray(1, 4).toString()).toBe('PNG');
    expect([bytes.readUInt32BE(16), bytes.readUInt32BE(20)]).toEqual([1120, 720]);
});

test('a picture waits for a page that is busy', async () => {
    const busy = `<!DOCTYPE html><title>Busy</title>
<body aria-busy="true" style="background: linear-gradient(red, blue)">
<script src="busy.js"></script>\n`;
    // Noise does not get small when it is compressed.
    const noise = `setTimeout(() => {
    const canvas = document.createElement('canvas');
    canvas.width = canvas.height = 400;
    const context = canvas.getContext('2d');
    const pixels = context.createImageData(400, 400);
    for (let at = 0; at < pixels.data.length; at++) pixels.data[at] = 255 * Math.random();
    context.putImageData(pixels, 0, 0);
    document.body.append(canvas);
    document.body.removeAttribute('aria-busy');
}, 3000);\n`;
    fs.writeFileSync(path.join(suite.pages, 'busy.html'), busy);
    fs.writeFileSync(path.join(suite.pages, 'busy.js'), noise);
    const picture = path.join(suite.home, 'window.png');
    const ended = await run(['--page', 'busy.html', '--screenshot', picture]);
    expect(ended).toMatchObject({ status: 0, signal: null });
    expect(fs.statSync(picture).size).toBeGreaterThan(300_000);
});

test('an unwritable picture is a failure', async () => {
    const end = await run(['--screenshot', '/nowhere/window.png']);
    expect(end.status).toBe(1);
    expect(end.stderr).toMatch(/cannot be written to \/nowhere\/window\.png/);
});

test('no Chromium flags are left in the environment, and root gets one warning', async () => {
    const program = await shared.start();
    const page = await program.page();
    const answer = await page.call('stratcheckenv');
    const text = Buffer.from(JSON.stringify(answer), 'utf8').toString();
    expect(text).not.toMatch(/QTWEBENGINE|no-sandbox/);
    if (process.getuid() === 0) {
        expect(program.stderr.match(/runs without its sandbox/g)).toHaveLength(1);
    }
});
