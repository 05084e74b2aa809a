import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { parseEvents, runAssistant, runCommand } from '../../assistantctl.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';
import { commands } from './commandtable.mjs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

test('--commands prints the 57 names in order, one a line', async () => {
    const end = await runAssistant(root, ['--commands']);
    expect(end).toMatchObject({ status: 0, stderr: '' });
    expect(end.stdout).toBe(commands.map((name) => `${name}\n`).join(''));
    expect(commands).toHaveLength(57);
});

describe('exit status', () => {
    test('0 for a command that answers', async () => {
        const end = await runCommand(root, 'getcollectionpage');
        expect(end).toMatchObject({ status: 0, stderr: '' });
        expect(end.events).toEqual([
            {
                type: 'answer',
                id: null,
                page: 'main',
                command: 'getcollectionpage',
                result: { page: '' },
            },
        ]);
    });

    test('0 for a command that sets no result', async () => {
        const end = await runCommand(root, 'mousePress');
        expect(end.status).toBe(0);
        expect(end.events).toEqual([
            { type: 'answer', id: null, page: 'main', command: 'mousePress' },
        ]);
    });

    test('1 for the result "error"', async () => {
        expect(await runCommand(root, 'addconfigfile')).toMatchObject({
            status: 1,
            answer: { result: 'error' },
        });
    });

    test.each([
        'nosuchcommand',
        'MousePress',
        'deleteLater',
        'onsearchfinished',
        'destroyed',
        'sigMousePress',
        'onsearchfileresult',
        'ondumpfileready',
        'setHandler',
        'a b',
        '-',
    ])('2 for %s, which is not a command', async (command) => {
        const end = await runCommand(root, command);
        expect(end.status).toBe(2);
        expect(end.events).toEqual([
            { type: 'error', id: null, message: expect.stringMatching(/./) },
        ]);
    });

    test.each([
        ['nothing at all', []],
        ['an unknown option', ['--nosuch', 'mousePress']],
        ['a page that is neither', ['--page', 'third', 'mousePress']],
        ['an option without its value', ['mousePress', '--choose']],
        ['a wait that is not a number', ['--wait', 'soon', 'mousePress']],
        ['a negative wait', ['--wait', '-1', 'mousePress']],
        ['an argument without a value', ['router', 'page']],
        ['an argument without a name', ['router', '=x']],
        ['an argument with broken JSON', ['router', 'page:={']],
        ['two JSON values', ['router', 'page:=1,2']],
        ['a command in a session', ['--session', 'mousePress']],
    ])('2 for %s', async (_, args) => {
        const end = await runAssistant(root, args, { input: '' });
        expect(end).toMatchObject({ status: 2, stdout: '' });
        expect(end.stderr).toMatch(/^assistantctl: ./);
    });

    test('3 when the library is missing or cannot be loaded', async () => {
        const library = '/suite/office/addons/vyrassistanttool/libofficeassistant.so';
        await root.writeFile(library, 'not a library');
        const broken = await runCommand(root, 'mousePress');
        expect(broken).toMatchObject({ status: 3, events: [{ type: 'error', id: null }] });
        await root.remove(library);
        const missing = await runCommand(root, 'mousePress');
        expect(missing).toMatchObject({ status: 3, events: [{ type: 'error', id: null }] });
        expect(missing.events[0].message).toContain('libofficeassistant');
    });

    test('4 when --until runs out of time, after the answer was printed', async () => {
        const end = await runCommand(root, 'mousePress', {}, { until: 'never', wait: 100 });
        expect(end).toMatchObject({ status: 4, answer: { command: 'mousePress' } });
    });
});

test('a user without a session gets no error output', async () => {
    const end = await runCommand(
        root,
        'getcollectionpage',
        {},
        { env: { XDG_RUNTIME_DIR: undefined } },
    );
    expect(end).toMatchObject({ status: 0, stderr: '' });
});

describe('options', () => {
    test('--until ends as soon as the callback came', async () => {
        const end = await runCommand(root, 'router', {}, { until: 'hiddentipCallBack' });
        expect(end.status).toBe(0);
        expect(end.events).toContainEqual({
            type: 'callback',
            page: 'main',
            callback: 'hiddentipCallBack',
            result: 'show',
        });
    });

    test('--page child sends from the child page', async () => {
        const end = await runCommand(
            root,
            'router',
            { page: 'x.html' },
            { page: 'child', until: 'hiddentipCallBack' },
        );
        expect(end.answer.page).toBe('child');
        expect(end.events.find(({ type }) => type === 'callback').page).toBe('child');
    });

    test('--pretty prints the same over several lines', async () => {
        const end = await runAssistant(root, ['--pretty', 'getcollectionpage']);
        expect(end.stdout.split('\n').length).toBeGreaterThan(5);
        expect(JSON.parse(end.stdout).result).toEqual({ page: '' });
    });

    test('without --trace only answers, callbacks and errors are printed', async () => {
        const { events } = await runCommand(root, 'router', { page: 'a' }, { wait: 100 });
        expect(new Set(events.map(({ type }) => type))).toEqual(new Set(['answer', 'callback']));
    });

    test('--choose answers dialogs in order; one without an answer is cancelled', async () => {
        await root.writeFile('/tmp/a', '');
        const chosen = await runCommand(root, 'addconfigfile', {}, { choose: ['/tmp/a'] });
        expect(chosen.answer.result).toBe('success');
        expect((await runCommand(root, 'addconfigfile')).answer.result).toBe('error');
    });

    test('an open dialog refuses a path that does not exist', async () => {
        const end = await runCommand(
            root,
            'addconfigfile',
            {},
            { choose: ['/tmp/none'], trace: true },
        );
        expect(end.answer.result).toBe('error');
        expect(end.events[0]).toMatchObject({ type: 'dialog', mode: 'open', chosen: null });
    });
});

describe('text', () => {
    test.each(['C.UTF-8', 'C', 'POSIX', undefined])('is UTF-8 in the locale %s', async (LANG) => {
        const end = await runCommand(
            root,
            'router',
            { page: '桌面 €😀' },
            { trace: true, env: { LANG } },
        );
        expect(end.events).toContainEqual({
            type: 'signal',
            page: 'main',
            signal: 'sigShowChildWindow',
            args: ['桌面 €😀'],
        });
    });

    test('NAME=VALUE keeps everything behind the first equals sign', async () => {
        const { events } = await runCommand(
            root,
            'router',
            { page: 'a=b:=c "d" \\ \n e' },
            { trace: true },
        );
        expect(events.find(({ signal }) => signal === 'sigChangeHtmlPage').args).toEqual([
            'a=b:=c "d" \\ \n e',
        ]);
    });

    test('each event is one compact line', async () => {
        const end = await runAssistant(root, ['getcollectionpage']);
        expect(end.stdout).toBe(`${JSON.stringify(parseEvents(end.stdout)[0])}\n`);
    });
});

test('nothing is written outside the suite’s own directory', async () => {
    await runCommand(root, 'getcollectionpage');
    expect(await root.list('/tmp')).toEqual([]);
    // Fontconfig writes its own cache when the system's is outdated.
    const found = (await root.list('/home/user')).filter((name) => name !== '.cache');
    expect(found).toEqual(['.local']);
    expect(await root.list('/home/user/.local/share')).toEqual(['Orvane']);
});

test('an unusable home is no reason to fail', async () => {
    const end = await runCommand(
        root,
        'getcollectionpage',
        {},
        { env: { HOME: '/proc/none', XDG_RUNTIME_DIR: undefined }, directory: '/tmp' },
    );
    expect(end).toMatchObject({ status: 0, answer: { result: { page: '' } } });
});

test('a library of the same name in LD_LIBRARY_PATH is not taken', async () => {
    await root.writeFile('/home/user/libs/libhelio.so', 'no library');
    const end = await root.run(['/suite/office/assistantctl', '--commands'], {
        env: { LD_LIBRARY_PATH: '/home/user/libs' },
    });
    expect(end).toMatchObject({ status: 0, stderr: '' });
});
