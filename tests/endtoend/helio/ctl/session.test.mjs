import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { openDialog, Session } from '../../assistantctl.mjs';
import { isEmulated } from '../../emulated.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';

let root;
let session;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    session = Session.start(root);
});

afterEach(async () => root.dispose());

/** The session is alive and in order: it answers the next command. */
async function expectGoesOn() {
    expect((await session.send({ command: 'getcollectionpage' })).result).toEqual({ page: '' });
}

describe('malformed lines', () => {
    test.each([
        ['not JSON', '{'],
        ['text', 'mousePress'],
        ['a JSON text', '"mousePress"'],
        ['a number', '7'],
        ['null', 'null'],
        ['an array', '[{"command":"mousePress"}]'],
        ['an empty object', '{}'],
        ['two objects', '{"wait":0}{"wait":0}'],
        ['a control byte', '\u0001'],
        ['an embedded zero', '{"command":"mouse\0Press"}'],
        ['a command of number type', '{"command":7}'],
        ['an empty command', '{"command":""}'],
        ['a wrong page', '{"command":"mousePress","page":"third"}'],
        ['a page of number type', '{"command":"mousePress","page":1}'],
        ['args that are a list', '{"command":"mousePress","args":[1]}'],
        ['args that are null', '{"command":"mousePress","args":null}'],
        ['choices that are text', '{"command":"mousePress","choose":"/tmp/a"}'],
        ['choices that are numbers', '{"command":"mousePress","choose":[1]}'],
        ['a wait of text', '{"wait":"5"}'],
        ['a negative wait', '{"wait":-5}'],
        ['a wait beyond all bounds', '{"wait":1e300}'],
        ['an until of number', '{"until":5}'],
        ['a timeout of text', '{"until":"x","timeout":"5"}'],
    ])('%s gives an error and the session goes on', async (_, line) => {
        await session.sendLine(line);
        const error = await session.error();
        expect(error).toMatchObject({ id: null, message: expect.stringMatching(/./) });
        await expectGoesOn();
        expect(await session.close()).toMatchObject({ status: 0 });
        expect(session.events).toHaveLength(2);
    });

    test('the id of a faulty request comes back', async () => {
        await session.sendLine('{"id":"x7","command":5}');
        expect((await session.error()).id).toBe('x7');
    });

    test('bytes that are not UTF-8 give an error', async () => {
        await session.sendBytes(Buffer.from([0x7b, 0x22, 0xff, 0xfe, 0x22, 0x0a]));
        await session.error();
        await expectGoesOn();
    });

    test('empty lines are passed over', async () => {
        await session.sendLine('\n\n   \n\t');
        await expectGoesOn();
        await session.close();
        expect(session.events).toHaveLength(1);
    });

    test('5 MB without a line feed are one malformed line', async () => {
        await session.sendLine('x'.repeat(5_000_000));
        await session.error();
        await expectGoesOn();
    });

    test('100,000 nested lists are refused', async () => {
        await session.sendLine(`{"command":"mousePress","args":{"a":${'['.repeat(100_000)}`);
        await session.error();
        await expectGoesOn();
    });
});

describe('commands', () => {
    test.each([
        'nosuchcommand',
        'mousepress',
        'deleteLater',
        'objectNameChanged',
        'setHandler',
        'sigCloseMainWindow',
        'onsearchfinished',
        'mousePress(KxWebViewJSContext&)',
        'x\u0000y',
    ])('%j is unknown', async (command) => {
        expect(await session.send({ id: 3, command })).toMatchObject({ type: 'error', id: 3 });
        await expectGoesOn();
    });

    test.each([[7], ['text'], [null], [{ deep: [1] }], [true], [1.5]])(
        'the id %j comes back as it was sent',
        async (id) => {
            await session.sendLine(JSON.stringify({ id, command: 'mousePress' }));
            await expectGoesOn();
            expect(session.traced('answer')[0].id).toEqual(id);
        },
    );

    test('a missing id is null', async () => {
        await session.sendLine('{"command":"mousePress"}');
        await expectGoesOn();
        expect(session.traced('answer')[0]).toEqual({
            type: 'answer',
            id: null,
            page: 'main',
            command: 'mousePress',
        });
    });

    test('the last line needs no line feed', async () => {
        await session.sendBytes(Buffer.from('{"id":9,"command":"getcollectionpage"}'));
        expect((await session.close()).events).toMatchObject([{ type: 'answer', id: 9 }]);
    });

    test('many requests at once are answered in order', async () => {
        const ids = [...Array(500).keys()];
        await session.sendLine(
            ids.map((id) => JSON.stringify({ id, command: 'getcollectionpage' })).join('\n'),
        );
        const { events } = await session.close();
        expect(events.map(({ id }) => id)).toEqual(ids);
    });

    test('each page keeps what is its own', async () => {
        await session.send({ command: 'feedbacktovyr', args: { infopage: 'crash' } });
        expect(
            (await session.send({ page: 'child', command: 'getcollectionpage' })).result,
        ).toEqual({ page: '' });
        expect((await session.send({ command: 'getcollectionpage' })).result).toEqual({
            page: 'crash',
        });
    });
});

describe('arguments', () => {
    /** What a command does with a value that is not text. */
    async function textOf(value) {
        const answer = await session.send({ command: 'feedbacktovyr', args: { infopage: value } });
        expect(answer).not.toHaveProperty('result');
        return (await session.send({ command: 'getcollectionpage' })).result.page;
    }

    test.each([
        ['', ''],
        ['a b', 'a b'],
        ['桌面 😀', '桌面 😀'],
        ['"\\\n\t', '"\\\n\t'],
        [7, '7'],
        [-1.5, '-1.5'],
        [true, 'true'],
        [false, 'false'],
        [null, ''],
        [[], ''],
        [[1, 'a'], ''],
        [{}, ''],
        [{ a: { b: [] } }, ''],
    ])('%j reads as the text %j', async (value, text) => {
        expect(await textOf(value)).toBe(text);
    });

    test('a missing argument reads as empty text', async () => {
        await session.send({ command: 'feedbacktovyr', args: { infopage: 'x' } });
        await session.send({ command: 'feedbacktovyr', args: { other: 'y' } });
        await expectGoesOn();
    });

    test('a text of 3 MB passes unchanged', async () => {
        const text = '桌a€'.repeat(450_000);
        expect(await textOf(text)).toBe(text);
    });

    test('an embedded zero does no harm', async () => {
        expect(await textOf('a\u0000b')).toMatch(/^a/);
        await session.send({ command: 'feedbacktovyr', args: { infopage: '' } });
        await expectGoesOn();
    });

    test('half a surrogate pair does no harm', async () => {
        await session.sendLine('{"command":"feedbacktovyr","args":{"infopage":"\\ud83d"}}');
        await session.send({ command: 'feedbacktovyr', args: { infopage: '' } });
        await expectGoesOn();
    });

    test('10,000 arguments are taken', async () => {
        const args = Object.fromEntries([...Array(10_000).keys()].map((n) => [`n${n}`, n]));
        await session.send({ command: 'feedbacktovyr', args: { ...args, infopage: 'kept' } });
        expect((await session.send({ command: 'getcollectionpage' })).result.page).toBe('kept');
    });
});

describe('dialogs', () => {
    test('are answered with the first of the choices', async () => {
        await root.writeFile('/tmp/a', '');
        const answer = await session.send({
            command: 'addconfigfile',
            choose: ['/tmp/a', '/tmp/b'],
        });
        expect(answer.result).toBe('success');
        expect(session.traced('dialog')).toEqual([openDialog('/tmp/a')]);
    });

    test('are cancelled without a choice', async () => {
        expect((await session.send({ command: 'addconfigfile' })).result).toBe('error');
        expect(session.traced('dialog')[0].chosen).toBeNull();
    });

    test('do not see choices left over from an earlier request', async () => {
        await root.writeFile('/tmp/a', '');
        await session.send({ command: 'getcollectionpage', choose: ['/tmp/a'] });
        expect((await session.send({ command: 'addconfigfile' })).result).toBe('error');
    });

    test('a name with blanks, quotes and Chinese passes unchanged', async () => {
        const name = 'a "b" \'c\' 桌面\n.txt';
        await root.writeFile(`/tmp/${name}`, '');
        await session.send({ command: 'addconfigfile', choose: [`/tmp/${name}`] });
        const { result } = await session.send({ command: 'stratextractfileinfo' });
        expect(result[name]).toMatch(/^user\|user\|110-100-100\|/);
    });
});

describe("the user's configuration", () => {
    test('is not written to by a dialog', async () => {
        await root.writeFile('/tmp/a', '');
        await session.send({ command: 'addconfigfile', choose: ['/tmp/a'] });
        await session.send({ command: 'exportsysinfo', choose: ['/tmp/b'] });
        await session.send({ command: 'chooselayouterrorfile' });
        expect(await root.exists('/home/user/.config')).toBe(false);
    });

    test('is found where it is after a dialog', async () => {
        await session.send({ command: 'addconfigfile' });
        await session.send({ command: 'stopDump' });
        expect(await root.list('/home/user/.config/Orvane')).toEqual(['Office.conf']);
        expect((await session.send({ command: 'getDumpState' })).result.enable).toBe(false);
    });
});

describe('waiting', () => {
    test('a wait lasts as long as requested', async () => {
        const begin = Date.now();
        expect(await session.wait(300)).toEqual({ type: 'waited' });
        expect(Date.now() - begin).toBeGreaterThanOrEqual(290);
    });

    test('until ends with the callback, or reports that it timed out', async () => {
        await session.send({ command: 'router', args: { page: 'a' } });
        expect(await session.until('hiddentipCallBack', 60_000)).toEqual({ type: 'waited' });
        expect(await session.until('hiddentipCallBack', 50)).toEqual({
            type: 'waited',
            timeout: true,
        });
    });

    test('the end of input during a wait ends the session after it', async () => {
        await session.sendLine('{"wait":100}\n{"id":1,"command":"mousePress"}');
        expect((await session.close()).events.map(({ type }) => type)).toEqual([
            'waited',
            'signal',
            'answer',
        ]);
    });
});

describe('the input', () => {
    test('belongs to the session and not to the programs that it starts', async () => {
        await root.fake('fc-list', '#!/bin/bash\ncat\necho ended >> /tmp/fclist\n');
        expect((await session.send({ command: 'stratcheckenv' })).result.fontinfo).toBe('');
        expect(await root.readFile('/tmp/fclist')).toBe('ended\n');
        await expectGoesOn();
    });

    // qemu-user opens its own program as the first descriptor that is free.
    test.skipIf(isEmulated)('that was closed from the start ends the session at once', async () => {
        const end = await root.run(['bash', '-c', 'exec /suite/office/assistantctl --session <&-']);
        expect(end).toMatchObject({ status: 0, stdout: '', stderr: '' });
    });

    test('may end right behind a command whose program a thread starts', async () => {
        await session.sendLine('{"page":"child","command":"vyrenvcheck","args":{"type":"t"}}');
        const { events } = await session.close();
        expect(events.filter(({ type }) => type === 'started')).toEqual([
            {
                type: 'started',
                program: '/suite/office/vyrEnvCheckTool',
                arguments: ['t', '', ''],
                workingDirectory: '',
                detached: false,
            },
        ]);
    });
});
