import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const list = '/home/user/.config/mimeapps.list';
const desktopList = '/home/user/.config/odd-mimeapps.list';
const entries = '/home/user/.local/share/applications';
const type = 'application/x-plan';
const before = `# mine\n[Default Applications]\n${type}=lost.desktop\ntext/x=a.desktop`;

const schema = fileURLToPath(new URL('../../../docs/doctor.schema.json', import.meta.url));
const validator = `
import json, jsonschema, sys
check = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))
for event in json.load(sys.stdin):
    check.validate(event)
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true, env: { XDG_CURRENT_DESKTOP: 'Odd' } });
    await root.writeFile(
        `${entries}/right.desktop`,
        '[Desktop Entry]\nType=Application\nName=x\nExec=true %f\n',
    );
    await root.writeFile(`${entries}/mimeinfo.cache`, `[MIME Cache]\n${type}=right.desktop;\n`);
    await root.writeFile(list, before);
});

afterEach(async () => root.dispose());

async function why(...args) {
    return root.run(['/suite/office/assistantctl', 'why', 'open', ...args]);
}

async function lines(...args) {
    const { status, stdout } = await why('--json', ...args);
    const events = stdout.trimEnd().split('\n').map(JSON.parse);
    const input = JSON.stringify(events);
    execFileSync('/usr/bin/python3', ['-c', validator, schema], { input, encoding: 'utf8' });
    return { status, events };
}

test('a default that is not installed is named with its line', async () => {
    const { status, events } = await lines(type);
    expect(status).toBe(1);
    expect(events).toMatchObject([
        {
            type: 'why',
            question: 'open',
            subject: type,
            mime: type,
            verdict: 'not-as-said',
            gio: { entry: 'right.desktop', path: `${entries}/right.desktop` },
            winner: { entry: 'right.desktop', path: `${entries}/mimeinfo.cache`, line: 2 },
            others: [{ entry: 'lost.desktop', path: list, line: 3, reason: 'fails' }],
            tools: { gio: 'right.desktop', 'xdg-mime': 'right.desktop' },
            xdgOpen: 'xdg-mime',
            proposal: 'right.desktop',
            remedy: `assistantctl why open --fix --with right.desktop -- ${type}`,
        },
    ]);
    expect(events[0].text).toBe(`${list}, line 3 names lost.desktop, but it is not installed.`);
    expect(events[0].statements).toMatchObject([
        { entry: 'lost.desktop', fate: 'fails', where: { path: list, line: 3 } },
        { entry: 'right.desktop', fate: 'decides' },
    ]);
});

test.each(['x-scheme-handler/plan', 'odd/plan'])(
    '%s is a type and no missing file',
    async (name) => {
        await root.writeFile(`${entries}/mimeinfo.cache`, `[MIME Cache]\n${name}=right.desktop;\n`);
        const { status, events } = await lines(name);
        expect(status).toBe(0);
        expect(events).toMatchObject([{ mime: name, winner: { entry: 'right.desktop', line: 2 } }]);
    },
);

test('the repair changes one line, and undo takes it back', async () => {
    const { status, events } = await lines('--fix', '--yes', type);
    expect(status).toBe(0);
    expect(events.map((event) => event.type)).toEqual(['why', 'change', 'repair', 'why']);
    expect(events.at(-1)).toMatchObject({ verdict: 'opens', gio: { where: { line: 3 } } });
    expect(await root.readFile(list)).toBe(
        before.replace('lost.desktop', 'right.desktop;lost.desktop;'),
    );
    expect((await root.run(['/suite/office/assistantctl', 'doctor', 'undo'])).status).toBe(0);
    expect(await root.readFile(list)).toBe(before);
});

test('an office document is given to LibreOffice where the suite is not there', async () => {
    const text = 'application/vnd.oasis.opendocument.text';
    const entry = (command) =>
        `[Desktop Entry]\nType=Application\nName=x\nExec=${command} %f\nMimeType=${text};\n`;
    await root.writeFile(`${entries}/archiver.desktop`, entry('true'));
    await root.writeFile(`${entries}/libreoffice-writer.desktop`, entry('soffice'));
    await root.writeFile(
        `${entries}/mimeinfo.cache`,
        `[MIME Cache]\n${text}=archiver.desktop;libreoffice-writer.desktop;\n`,
    );
    await root.writeFile(list, `[Default Applications]\n${text}=lost.desktop\n`);
    expect((await lines(text)).events).toMatchObject([
        { gio: { entry: 'archiver.desktop' }, proposal: 'libreoffice-writer.desktop' },
    ]);
    expect((await why('--fix', '--yes', text)).status).toBe(0);
    expect((await lines(text)).events).toMatchObject([
        { verdict: 'opens', gio: { entry: 'libreoffice-writer.desktop' } },
    ]);
});

test('a repair that another list overrules is taken back', async () => {
    await root.writeFile(desktopList, `[Default Applications]\n${type}=other.desktop\n`);
    await root.writeFile(
        `${entries}/other.desktop`,
        '[Desktop Entry]\nType=Application\nName=x\nExec=true\n',
    );
    const { status, stdout } = await why('--fix', '--yes', '--with', 'right.desktop', type);
    expect(status).toBe(1);
    expect(stdout).toContain(`${desktopList} decides all the same`);
    expect(await root.readFile(list)).toBe(before);
});

test('without a yes, in a dry run and for an unusable entry nothing changes', async () => {
    for (const args of [[], ['--dry-run'], ['--yes', '--with', 'lost.desktop']]) {
        expect((await why('--fix', ...args, type)).status).toBe(1);
    }
    expect(await root.readFile(list)).toBe(before);
    expect(await root.exists('/home/user/.local/state/office-assistant')).toBe(false);
});

test('without a type all kinds of documents are listed', async () => {
    const { events } = await lines();
    expect(events).toHaveLength(39);
    expect(new Set(events.map((event) => event.suffix)).size).toBe(39);
    expect((await why('--all')).stdout.split('\n')).toHaveLength(40);
});

test('a pipe as list is not waited for, and names do not reach the terminal', async () => {
    await root.run(['/usr/bin/mkfifo', desktopList]);
    expect((await why(type)).status).toBe(3);
    const { stdout } = await why('/home/user/\u001b[31m\nname.odt');
    expect(stdout).not.toContain('\u001b');
});

test('a wrong line is refused', async () => {
    for (const args of [
        ['a', 'b'],
        ['--with', 'x', 'a'],
        ['--fix'],
        ['--all', 'a'],
        ['--for', 'x'],
    ]) {
        expect((await why(...args)).status).toBe(2);
    }
});

test('texts are in the language of the locale', async () => {
    const { stdout } = await root.run(['/suite/office/assistantctl', 'why', 'open', 'text/none'], {
        env: { LC_ALL: 'zh_CN.UTF-8' },
    });
    expect(stdout).toContain('没有程序打开它');
});
