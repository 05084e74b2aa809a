import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const folder = '/home/user/closed';
const file = `${folder}/plan.odt`;

const schema = fileURLToPath(new URL('../../../docs/doctor.schema.json', import.meta.url));
const validator = `
import json, jsonschema, sys
check = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))
for event in json.load(sys.stdin):
    check.validate(event)
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.writeFile(file, 'x', { mode: 0o200 });
});

afterEach(async () => root.dispose());

async function why(...args) {
    return root.run(['/suite/office/assistantctl', 'why', 'denied', ...args]);
}

async function lines(...args) {
    const { status, stdout } = await why('--json', ...args);
    return { status, events: stdout.trimEnd().split('\n').map(JSON.parse) };
}

function expectValid(events) {
    const input = JSON.stringify(events);
    execFileSync('/usr/bin/python3', ['-c', validator, schema], { input, encoding: 'utf8' });
}

test('an access that is granted is said in one line of JSON', async () => {
    const { status, events } = await lines('--for', 'write', file);
    expect(status).toBe(0);
    expect(events).toMatchObject([
        {
            type: 'why',
            question: 'denied',
            subject: file,
            access: 'write',
            verdict: 'granted',
            text: `${file}: you may write to it`,
            blocked: false,
            component: '',
            reason: '',
            remedy: '',
        },
    ]);
    expectValid(events);
    expect(events[0].chain.map((one) => one.path)).toEqual([
        '/',
        '/home',
        '/home/user',
        folder,
        file,
    ]);
});

test('what the user may open is opened, and taken back by undo', async () => {
    const before = await lines(file);
    expect(before.status).toBe(1);
    expect(before.events).toMatchObject([
        {
            verdict: 'denied',
            reason: 'rights',
            blocked: true,
            component: file,
            remedy: `chmod u+r ${file}`,
            needs: 'user',
        },
    ]);
    const { status, events } = await lines('--fix', '--yes', file);
    expect(status).toBe(0);
    expect(events.map((event) => event.type)).toEqual(['why', 'change', 'repair', 'why']);
    expect(events.at(-1).verdict).toBe('granted');
    expect((await root.stat(file)).mode & 0o777).toBe(0o600);
    const undo = await root.run(['/suite/office/assistantctl', 'doctor', 'undo']);
    expect(undo.status).toBe(0);
    expect((await root.stat(file)).mode & 0o777).toBe(0o200);
    expectValid([...before.events, ...events]);
});

test('without a yes, and in a dry run, nothing is opened', async () => {
    expect((await why('--fix', file)).status).toBe(1);
    expect((await why('--fix', '--dry-run', file)).status).toBe(1);
    expect((await root.stat(file)).mode & 0o777).toBe(0o200);
    expect(await root.exists('/home/user/.local/state/office-assistant')).toBe(false);
});

test('a name with control characters does not reach the terminal', async () => {
    const { status, stdout } = await why('/home/user/\u001b[31m\nname');
    expect(status).toBe(1);
    expect(stdout).not.toContain('\u001b');
    expect(stdout.trimEnd().split('\n').at(-1)).toMatch(/name does not exist\.$/);
});

test('a wrong line is refused', async () => {
    for (const args of [[], ['a', 'b'], ['--for', 'x', 'a']]) {
        expect((await why(...args)).status).toBe(2);
    }
});

test('texts are in the language of the locale', async () => {
    const { stdout } = await root.run(['/suite/office/assistantctl', 'why', 'denied', '/none'], {
        env: { LC_ALL: 'zh_CN.UTF-8' },
    });
    expect(stdout).toContain('/none 不存在。');
});
