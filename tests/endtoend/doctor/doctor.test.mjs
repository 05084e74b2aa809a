import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const settings = '/home/user/.config/Orvane/Office.conf';
const ownChecks = '/home/user/.config/office-assistant/checks.d';
const journal = '/home/user/.local/state/office-assistant/repairs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.writeFile(settings, '[Version]\n', { mode: 0o666 });
});

afterEach(async () => root.dispose());

async function doctor(args, options) {
    return root.run(['/suite/office/assistantctl', 'doctor', ...args], options);
}

async function lines(args) {
    const { status, stdout } = await doctor([...args, '--json']);
    const events = stdout
        .trimEnd()
        .split('\n')
        .filter((line) => line !== '')
        .map((line) => JSON.parse(line));
    return {
        status,
        events,
        last: events.at(-1),
        of: (type) => events.filter((e) => e.type === type),
    };
}

async function mode() {
    return (await root.stat(settings)).mode & 0o777;
}

test('all checks run, and the summary counts them', async () => {
    const { status, of, last } = await lines([]);
    expect(last.type).toBe('summary');
    expect(of('check').length).toBe(last.checks);
    expect(last.failed).toBe(0);
    expect(of('finding').map((finding) => finding.check)).toContain('permissions.open');
    expect(status).toBe(1);
});

test('a finding says what was seen where, and what repairs it', async () => {
    const { of } = await lines(['permissions.open']);
    expect(of('check')).toMatchObject([{ check: 'permissions.open', result: 'finding' }]);
    expect(of('finding')).toMatchObject([
        { state: 'warning', where: [{ path: settings }], repairs: ['close'] },
    ]);
});

test('a healthy machine has no finding', async () => {
    await root.writeFile(settings, '[Version]\n', { mode: 0o600 });
    expect(await lines(['permissions.open'])).toMatchObject({
        status: 0,
        last: { type: 'summary', checks: 1, findings: 0, failed: 0 },
    });
});

test('a dry run shows changes and writes nothing', async () => {
    const before = await root.stat(settings);
    const { status, of } = await lines(['--fix', '--dry-run', 'permissions.open']);
    expect(status).toBe(1);
    expect(of('change')).toMatchObject([
        { kind: 'rights', path: settings, mode: '0664', needs: 'user' },
    ]);
    expect(of('repair')).toMatchObject([{ repair: 'close', result: 'planned', journal: 0 }]);
    expect((await root.stat(settings)).ctimeMs).toBe(before.ctimeMs);
    expect(await root.exists('/home/user/.local')).toBe(false);
});

test('a repair is verified, kept in the history and undone', async () => {
    expect(await lines(['--fix', '--yes', 'permissions.open'])).toMatchObject({ status: 0 });
    expect(await mode()).toBe(0o664);
    expect((await lines(['history'])).of('entry')).toMatchObject([
        { journal: 1, check: 'permissions.open', repair: 'close', state: 'applied' },
    ]);
    expect((await lines(['undo'])).last).toMatchObject({
        type: 'undone',
        journal: 1,
        result: 'undone',
    });
    expect(await mode()).toBe(0o666);
    expect((await lines(['history'])).of('entry')).toMatchObject([{ journal: 1, state: 'undone' }]);
});

test.each([
    ['n\n', 0o666],
    ['', 0o666],
    ['y\n', 0o664],
])('the answer %j decides whether it is repaired', async (input, wanted) => {
    const { status } = await doctor(['--fix', 'permissions.open'], { input });
    expect(await mode()).toBe(wanted);
    expect(status).toBe(wanted === 0o664 ? 0 : 1);
});

test('JSON without --yes asks nobody and repairs nothing', async () => {
    const { status, of } = await lines(['--fix', 'permissions.open']);
    expect(of('repair')).toMatchObject([{ result: 'refused' }]);
    expect(status).toBe(1);
    expect(await mode()).toBe(0o666);
});

const own = '/home/user/own.ini';
const ownCheck = {
    id: 'own.colour',
    title: { en: 'The colour is red' },
    look: { ini: own, section: 's', key: 'colour', value: { not: 'red' } },
    finding: { state: 'bad', text: { en: 'The colour is {value}.' } },
    repairs: [
        {
            id: 'red',
            title: { en: 'Make it red' },
            steps: [{ set: own, format: 'ini', key: ['s', 'colour'], value: 'red' }],
        },
        {
            id: 'useless',
            title: { en: 'Change something else' },
            steps: [{ set: own, format: 'ini', key: ['s', 'size'], value: '2' }],
        },
    ],
};

test('a check of the user changes one key, shown as a diff, and nothing else', async () => {
    await root.writeFile(`${ownChecks}/own.json`, JSON.stringify(ownCheck));
    await root.writeFile(own, '# mine\r\n[s]\r\ncolour = blue\nsize=1');
    const { status, of } = await lines(['--fix', '--yes', 'own.colour']);
    expect(of('change')[0]).toMatchObject({ kind: 'write', path: own });
    expect(of('change')[0].diff).toMatch(/^-colour = blue\n\+colour ?= ?red$/m);
    expect(of('repair')).toMatchObject([{ result: 'repaired', journal: 1 }]);
    expect(status).toBe(0);
    expect(await root.readFile(own)).toMatch(/^# mine\r\n\[s\]\r\ncolour ?= ?red\nsize=1$/);
    await root.writeFile(own, `${await root.readFile(own)}\n; added later`);
    await lines(['undo']);
    expect(await root.readFile(own)).toBe('# mine\r\n[s]\r\ncolour = blue\nsize=1\n; added later');
});

test('a repair that does not help is taken back', async () => {
    await root.writeFile(`${ownChecks}/own.json`, JSON.stringify(ownCheck));
    await root.writeFile(own, '[s]\ncolour=blue\nsize=1\n');
    const { status, of } = await lines(['--fix', '--yes', '--repair', 'useless', 'own.colour']);
    expect(of('repair')).toMatchObject([{ repair: 'useless', result: 'unchanged' }]);
    expect(status).toBe(1);
    expect(await root.readFile(own)).toBe('[s]\ncolour=blue\nsize=1\n');
});

test('a mistake in a check file has its line and column, and makes the run fail', async () => {
    await root.writeFile(`${ownChecks}/own.json`, '{\n  "id": "own.check",\n  "looks": {}\n}\n');
    const lint = await doctor(['--lint', `${ownChecks}/own.json`]);
    expect(lint.status).toBe(1);
    expect(lint.stderr).toMatch(/own\.json:3:3: /);
    expect(await lines(['permissions.open'])).toMatchObject({ status: 3, last: { failed: 1 } });
});

test('the latest repair that is not undone is the one to undo', async () => {
    await lines(['--fix', '--yes', 'permissions.open']);
    await lines(['undo']);
    const again = await lines(['undo']);
    expect(again).toMatchObject({ status: 1, last: { type: 'undone', result: 'failed' } });
    expect((await lines(['undo', '9'])).last).toMatchObject({ journal: 9, result: 'failed' });
});

test('wrong usage says what is wrong', async () => {
    for (const words of [['no.such.check'], ['undo', 'x'], ['--unknown'], ['--lint'], ['--yes']]) {
        const { status, stderr } = await doctor(words);
        expect(status).toBe(2);
        expect(stderr).toMatch(/^assistantctl doctor: ./);
    }
});

test.each([{ LANG: 'zh_CN.UTF-8' }, { LANG: 'en_GB.UTF-8', LANGUAGE: 'zh:en' }])(
    'texts are in the language of the session: %j',
    async (env) => {
        const { stdout } = await doctor(['--fix', '--yes', 'permissions.open'], { env });
        expect(stdout).toMatch(/此计算机的所有用户都可以修改/);
        expect(stdout).toMatch(/^ {2}设置权限：.*Office\.conf 0664$/m);
        expect(stdout).toMatch(/^permissions\.open\/close：已修复\n {4}撤销命令：assistantctl/m);
        await root.writeFile(settings, '[Version]\n', { mode: 0o600 });
        const undo = await doctor(['undo'], { env });
        expect(undo.stdout).toMatch(/^.*Office\.conf 的权限在修复后又被更改。$/m);
        expect((await doctor(['--list', '--fix'], { env })).stderr).toMatch(/只能选择其一/);
        const [reason] = (await lines(['undo', '7'])).of('undone');
        expect(reason.reason).toBe('There is no repair 7.');
    },
);

test('the columns of the history are aligned, also with wide characters', async () => {
    const env = { LANG: 'zh_CN.UTF-8' };
    const fix = ['--fix', '--yes', 'permissions.open'];
    await doctor(fix);
    await doctor(['undo']);
    await doctor(fix);
    const columns = (line) => line.replace(/\p{Script=Han}/gu, '##').indexOf('permissions.open');
    for (const settingsOfRun of [{}, { env }]) {
        const { stdout } = await doctor(['history'], settingsOfRun);
        const entries = stdout.split('\n').filter((line) => line.includes('permissions.open'));
        expect(entries.map(columns)).toEqual([38, 38]);
        expect(entries[0]).toMatch(settingsOfRun.env ? / 已撤销 / : / undone /);
    }
});

test('two doctors at once leave one journal that both can read', async () => {
    const fix = ['/suite/office/assistantctl doctor --fix --yes permissions.open'];
    await root.run(['bash', '-c', `${fix} & ${fix} & wait`]);
    expect(await mode()).toBe(0o664);
    const entries = (await lines(['history'])).of('entry');
    expect(entries.filter((entry) => entry.state === 'applied')).toHaveLength(1);
    expect(await root.list(journal)).toContain('1');
});

const schema = fileURLToPath(new URL('../../../docs/doctor.schema.json', import.meta.url));
const validator = `
import json, jsonschema, sys
check = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))
for line in sys.stdin:
    for error in check.iter_errors(json.loads(line)):
        sys.exit(f'{error.message}: {line}')
`;

test('every kind of line is as the published schema says', async () => {
    await root.writeFile(`${ownChecks}/own.json`, '{"id":"own.check"}');
    const seen = [];
    for (const words of [
        [],
        ['--list'],
        ['--fix', '--dry-run'],
        ['--fix', '--yes'],
        ['history'],
        ['undo'],
        ['--lint', `${ownChecks}/own.json`],
    ]) {
        seen.push(...(await lines(words)).events);
    }
    const types = new Set(seen.map(({ type }) => type));
    expect([...types].sort()).toEqual([
        'change',
        'check',
        'entry',
        'finding',
        'listed',
        'mistake',
        'repair',
        'suite',
        'summary',
        'undone',
    ]);
    const input = seen.map((event) => JSON.stringify(event)).join('\n');
    execFileSync('/usr/bin/python3', ['-c', validator, schema], { input, encoding: 'utf8' });
});
