import { execFile } from 'node:child_process';
import { once } from 'node:events';
import fs from 'node:fs';
import net from 'node:net';
import path from 'node:path';
import { promisify } from 'node:util';
import { waitFor } from 'browser-driver';
import { afterEach, expect, test } from 'vitest';

import { SessionBus } from '../helio/shell/sessionbus.mjs';
import { ShellProgram } from '../helio/shell/shellprogram.mjs';
import { repository } from '../paths.mjs';
import { patience, viewTests } from './viewtest.mjs';

const id = 'org.officeassistant.officeassistant';
const entry = fs.readFileSync(path.join(repository, `packaging/${id}.desktop`), 'utf8');
const shared = viewTests();
let bus;
let server;

afterEach(async () => {
    await bus?.stop();
    server?.close();
    bus = server = undefined;
});

/** The words behind the program that the desktop entry starts for an action. */
function wordsOf(action) {
    const [, group] = entry.split(`[Desktop Action ${action}]\n`);
    const [program, ...words] = group.match(/^Exec=(.*)$/m)[1].split(' ');
    expect(program).toBe('helio-shell');
    return words;
}

/** Calls the window as the desktop does for an entry that D-Bus activates. */
const activate = (action) =>
    promisify(execFile)(
        'gdbus',
        ['call', '--session', '--dest', id, '--object-path', `/${id.replaceAll('.', '/')}`].concat([
            '--method',
            'org.freedesktop.Application.ActivateAction',
            action,
            '[]',
            '{}',
        ]),
        { env: { ...process.env, ...bus.env }, timeout: 30_000 },
    );

/** Adds a check that asks a server, and counts how often it has been asked. */
async function countedCheck() {
    const count = { asked: 0 };
    server = net.createServer((socket) => {
        count.asked += 1;
        socket.destroy();
    });
    server.listen(0, '127.0.0.1');
    await once(server, 'listening');
    const { port } = /** @type {net.AddressInfo} */ (server.address());
    const check = {
        id: 'own.server',
        title: 'The server answers',
        look: { port, reachable: false },
        finding: { text: 'It does not.' },
    };
    shared.writeInHome('.config/office-assistant/checks.d/own.json', JSON.stringify(check));
    return count;
}

/** Closes the export's file dialog once it is there. */
async function cancelExport() {
    await shared.display.focused(await shared.display.dialog('Save File'));
    await shared.display.act('key', 'Escape');
    await shared.display.windowCount(1);
}

test('the desktop entry offers both actions', () => {
    expect(entry).toContain('\nActions=check-up;export-report;\n');
});

test('a new window begins with the check-up', async () => {
    const count = await countedCheck();
    const home = await shared.home({ args: wordsOf('check-up'), settled: false });
    await waitFor(() => count.asked, { what: 'the check', ...patience });
    expect(await home.call('window.state', {})).toMatchObject({ result: { action: '' } });
});

test('a new window begins with the export; a running one does what it is asked for', async () => {
    bus = await SessionBus.start(shared.suite);
    const count = await countedCheck();
    const start = (words) =>
        ShellProgram.start(shared.suite, shared.display, words, { debug: false, env: bus.env });
    shared.program = await start(wordsOf('export-report'));
    await cancelExport();
    await activate('export-report');
    await cancelExport();

    await waitFor(() => count.asked, { what: 'the check at the start', ...patience });
    const before = count.asked;
    const second = await start(wordsOf('check-up'));
    try {
        expect(await second.waitForExit()).toMatchObject({ status: 0 });
    } finally {
        await second.stop();
    }
    await waitFor(() => count.asked > before, { what: 'the check', ...patience });
});
