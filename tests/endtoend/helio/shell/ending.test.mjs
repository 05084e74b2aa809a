import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

async function startWithStagedScript() {
    const program = await shared.start();
    const page = await program.page();
    await page.call('stratcheckenv');
    expect(fs.readdirSync(shared.suite.staging).length).toBeGreaterThan(0);
    fs.mkdirSync(path.join(shared.suite.staging, 'kept'), { recursive: true });
    return program;
}

const signals = ['SIGTERM', 'SIGINT', 'SIGHUP'];

test.each(signals)('%s ends the program cleanly and removes staged scripts', async (name) => {
    const program = await startWithStagedScript();
    program.signal(name);
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
    expect(fs.readdirSync(shared.suite.staging)).toEqual(['kept']);
});

test('SIGTERM ends the program while a file dialog is open', async () => {
    const program = await startWithStagedScript();
    const page = await program.page();
    void page.call('exportsysinfo').catch(() => {});
    await shared.display.dialog('Save File');
    program.signal('SIGTERM');
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
    expect(fs.readdirSync(shared.suite.staging)).toEqual(['kept']);
});

test('SIGTERM ends the program while a command waits for a program that hangs', async () => {
    const started = path.join(shared.suite.home, 'started');
    const fake = path.join(shared.suite.fakes, 'fc-list');
    fs.writeFileSync(fake, `#!/bin/sh\necho $$ > ${started}\nexec sleep 600\n`, { mode: 0o755 });
    try {
        const program = await shared.start();
        const page = await program.page();
        void page.call('stratcheckenv').catch(() => {});
        await waitFor(() => fs.existsSync(started) && fs.readFileSync(started, 'utf8').trim(), {
            what: 'the start of the program that hangs',
        });
        const hanging = fs.readFileSync(started, 'utf8').trim();
        program.signal('SIGTERM');
        expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
        await waitFor(() => !fs.existsSync(`/proc/${hanging}`), {
            what: 'the end of the program that hangs',
        });
    } finally {
        fs.rmSync(fake);
    }
});

test('closing the window during a command with an event loop of its own does no harm', async () => {
    const program = await startWithStagedScript();
    const page = await program.page();
    void page.call('screenshots').catch(() => {});
    void page.call('closemainwindow').catch(() => {});
    expect(await program.waitForExit()).toMatchObject({ status: 0, signal: null });
});

test('the page lives on while a file dialog is open', async () => {
    const program = await shared.start();
    const page = await program.page();
    void page.call('exportsysinfo').catch(() => {});
    await shared.display.dialog('Save File');
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
    const frames = await page.evaluate(`new Promise((resolve) => {
        let count = 0;
        const step = () => (count += 1) === 5 ? resolve(count) : requestAnimationFrame(step);
        step();
    })`);
    expect(frames).toBe(5);
    await waitFor(
        async () => {
            await shared.display.act('key', 'Escape');
            return (await shared.display.windows(['--name', '^Save File'])).length === 0;
        },
        { what: 'the end of the dialog' },
    );
});

test('no process of the program stays behind', async () => {
    const program = await shared.start();
    await program.page();
    const renderers = program.renderers();
    expect(renderers.length).toBeGreaterThan(0);
    program.signal('SIGTERM');
    await program.waitForExit();
    await waitFor(() => renderers.every((pid) => !fs.existsSync(`/proc/${pid}`)), {
        what: 'the end of the renderers',
    });
});
