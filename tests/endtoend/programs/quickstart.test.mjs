import fs from 'node:fs';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const program = '/suite/office/quickstartoffice';
const patience = 120_000;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

/** Runs a script and returns its lines; what it leaves running ends with it. */
async function linesOf(script) {
    await root.writeFile(
        '/tmp/script.sh',
        `await() { timeout 60 bash -c "until $*; do sleep 0.05; done"; }\n${script}`,
    );
    const end = await root.run(['bash', '/tmp/script.sh'], { timeoutMs: patience });
    return end.stdout.trim().split('\n');
}

const runs = 'pgrep -x soffice.bin > /dev/null && echo runs || echo gone';

test('the commands start LibreOffice once, anew and end it', async () => {
    const command = '/suite/office/assistantctl';
    const lines = await linesOf(`
${program} status
${program} start
${program} start false
pgrep -cx soffice.bin
first=$(pgrep -x soffice.bin)
${command} restartpreload
await '! ps -p '$first' > /dev/null'
await ${program} status '>' /dev/null '2>&1'
${program} stop false
${runs}
${command} stoppreload
${program} stop false`);
    expect(lines).toEqual([
        'LibreOffice is started and waits for documents.',
        'LibreOffice is running already; documents open without its start.',
        '1',
        expect.stringContaining('"success"'),
        'LibreOffice has ended.',
        'gone',
        expect.stringContaining('"success"'),
        'LibreOffice is not running.',
    ]);
});

test('with an open document it goes on running', async () => {
    await root.writeFile('/home/user/plan.txt', 'A plan.\n');
    const goesOn =
        'LibreOffice has open documents, so it goes on running. It ends when you close the last of them.';
    expect(
        await linesOf(`
soffice --headless --norestore /home/user/plan.txt &
await test -e /home/user/.~lock.plan.txt#
${program} start
${program} stop false 2>&1
${program} restart false 2>&1
${runs}
test -e /home/user/.~lock.plan.txt# && echo open`),
    ).toEqual([
        'LibreOffice is running already; documents open without its start.',
        goesOn,
        goesOn,
        'runs',
        'open',
    ]);
});

test('without an office suite it says so', async () => {
    const empty = root.hostPath('/tmp/none');
    fs.mkdirSync(empty);
    root.bind(empty, '/usr/lib/libreoffice');
    const end = await root.run([program, 'start']);
    expect(end).toMatchObject({
        status: 1,
        stderr: 'No office suite is installed. Install LibreOffice.\n',
    });
});

test('other words are refused', async () => {
    for (const words of [[], ['open'], ['stop', 'now'], ['stop', 'false', 'false']]) {
        expect(await root.run([program, ...words])).toMatchObject({ status: 2, stdout: '' });
    }
});
