import { setTimeout as pause } from 'node:timers/promises';

import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand, Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const toolPath = '/suite/office/vyrEnvCheckTool';
const answers = '/home/user/.local/share/Orvane/tmp/vyrEnv.ini';
const endCallback = 'returnvyrenvcheck';

/** Records its arguments and writes the answer "ok TYPE" for its component. */
const toolScript = `#!/bin/bash
printf '%s\\0' "$#" "$@" >> /fakecalls/vyrEnvCheckTool
mkdir -p ~/.local/share/Orvane/tmp
printf '[vyrEnv]\\n%s-%s=ok %s\\n' "$2" "$1" "$1" > ${answers}
`;
/** Runs until the test lets it end. */
const heldTool = `touch ~/runs
while [ ! -e ~/go ]; do sleep 0.02; done
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.writeFile(toolPath, toolScript, { mode: 0o755 });
});

afterEach(async () => root.dispose());

const check = (args) =>
    runCommand(root, 'vyrenvcheck', args, { page: 'child', until: endCallback });
const held = () => waitFor(() => root.exists('/home/user/runs'), { what: 'the tool' });
const release = () => root.writeFile('/home/user/go', '');

describe('one check', () => {
    test('without an argument runs the tool with an empty one and tells the child page', async () => {
        const end = await check({ type: 't', app: 'vyr' });
        expect(end).toMatchObject({ status: 0, answer: { page: 'child', result: 'success' } });
        expect(end.events.filter(({ type }) => type === 'callback')).toEqual([
            {
                type: 'callback',
                page: 'child',
                callback: endCallback,
                result: { value: base64('ok t'), cmd: 't', app: 'vyr' },
            },
        ]);
        expect(await root.callsOf('vyrEnvCheckTool')).toEqual([['t', 'vyr', '']]);
    });

    test('passes type, component and argument as they are', async () => {
        const args = { type: '--all; $(touch /tmp/ran)', app: 'a b', arg: '*"\'\n' };
        await check(args);
        expect(await root.callsOf('vyrEnvCheckTool')).toEqual([[args.type, args.app, args.arg]]);
        expect(await root.exists('/tmp/ran')).toBe(false);
    });

    test('a stored ok reaches the page as its base64', async () => {
        await root.writeFile(toolPath, '#!/bin/bash\n', { mode: 0o755 });
        await root.writeFile(answers, '[vyrEnv]\nvyr-t=ok\n');
        const end = await check({ type: 't', app: 'vyr' });
        expect(end.events.at(-1).result).toEqual({ value: 'b2s=', cmd: 't', app: 'vyr' });
    });

    test.each([
        ['is missing', null],
        ['cannot be run', { script: toolScript, mode: 0o644 }],
        ['fails', { script: '#!/bin/bash\nexit 9\n', mode: 0o755 }],
        ['crashes', { script: '#!/bin/bash\nkill -SEGV $$\n', mode: 0o755 }],
    ])('a tool that %s gives what an earlier run left', async (_, tool) => {
        await root.remove(toolPath);
        if (tool) await root.writeFile(toolPath, tool.script, { mode: tool.mode });
        await root.writeFile(answers, '[vyrEnv]\nvyr-t=earlier\n');
        const end = await check({ type: 't', app: 'vyr' });
        expect(end.events.at(-1).result.value).toBe(base64('earlier'));
    });

    test.each([
        ['is missing', 'rm -rf'],
        ['is a directory', 'mkdir -p'],
        ['is unreadable', 'install -m 000 /dev/null'],
        ['is garbage', 'head -c 200000 /dev/urandom >'],
    ])('an answer file that %s gives an empty value', async (_, command) => {
        await root.writeFile(
            toolPath,
            `#!/bin/bash\nmkdir -p ~/.local/share/Orvane/tmp\n${command} ${answers}\n`,
            { mode: 0o755 },
        );
        const end = await check({ type: 't', app: 'vyr' });
        expect(end.events.at(-1)).toMatchObject({
            callback: endCallback,
            result: { value: '', cmd: 't', app: 'vyr' },
        });
    });

    test('fifty megabytes that the tool prints stay out of the way', async () => {
        await root.writeFile(toolPath, `${toolScript}yes | head -c 52428800\n`, { mode: 0o755 });
        expect((await check({ type: 't', app: 'vyr' })).events.at(-1).result.value).toBe(
            base64('ok t'),
        );
    });

    test('without a child page nothing is reported or kept', async () => {
        const session = Session.start(root);
        await session.send({ command: 'vyrenvcheck', args: { type: 't', app: 'vyr' } });
        await waitFor(async () => (await root.callsOf('vyrEnvCheckTool')).length === 1);
        await session.wait(500);
        expect(session.events.filter(({ type }) => type === 'callback')).toEqual([]);
        expect((await session.send({ command: 'getvyrenvcheckedresult' })).result).toBe('error');
        await session.close();
    });
});

describe('getvyrenvcheckedresult', () => {
    test('answers error right after start-up', async () => {
        expect(await runCommand(root, 'getvyrenvcheckedresult')).toMatchObject({
            status: 1,
            answer: { result: 'error' },
        });
    });

    test('answers every check once, under type and component', async () => {
        const session = Session.start(root);
        const one = async (args) => {
            await session.send({ command: 'vyrenvcheck', page: 'child', args });
            await session.callback(endCallback);
        };
        await one({ type: 't', app: 'vyr' });
        await one({ type: 'u', app: 'vyr' });
        const kept = async () => (await session.send({ command: 'getvyrenvcheckedresult' })).result;
        expect(await kept()).toEqual({ 't-vyr': 'ok t', 'u-vyr': 'ok u' });
        await root.writeFile(toolPath, '#!/bin/bash\n', { mode: 0o755 });
        await root.writeFile(answers, '[vyrEnv]\nvyr-t=another\n');
        await one({ type: 't', app: 'vyr' });
        expect(await kept()).toEqual({ 't-vyr': 'another', 'u-vyr': 'ok u' });
        await session.close();
    });

    test('names that are not ASCII come as their UTF-8 bytes, a character each', async () => {
        const session = Session.start(root);
        await session.send({
            command: 'vyrenvcheck',
            page: 'child',
            args: { type: '字', app: 'vyr' },
        });
        expect((await session.callback(endCallback)).result.cmd).toBe('字');
        const { result } = await session.send({ command: 'getvyrenvcheckedresult' });
        expect(Object.keys(result)).toEqual([`${Buffer.from('字').toString('latin1')}-vyr`]);
        await session.close();
    });
});

describe('a check that is under way', () => {
    beforeEach(async () => {
        const script = toolScript.replace(
            '\nmkdir',
            `\nif [ "$1" = slow ]; then\n${heldTool}fi\nmkdir`,
        );
        await root.writeFile(toolPath, script, { mode: 0o755 });
    });

    test('is waited for by the next one and never told', async () => {
        const session = Session.start(root);
        const page = 'child';
        await session.send({ command: 'vyrenvcheck', page, args: { type: 'slow', app: 'vyr' } });
        await held();
        const second = session.send({
            command: 'vyrenvcheck',
            page,
            args: { type: 'quick', app: 'vyr' },
        });
        await pause(500);
        expect(session.events.filter(({ type }) => type === 'answer')).toHaveLength(1);
        await release();
        expect((await second).result).toBe('success');
        expect((await session.callback(endCallback)).result.cmd).toBe('quick');
        const kept = await session.send({ command: 'getvyrenvcheckedresult' });
        expect(kept.result).toEqual({ 'quick-vyr': 'ok quick' });
        await session.close();
        expect(session.events.filter(({ callback }) => callback === endCallback)).toHaveLength(1);
    });

    test('is dropped, without a wait, when its view closes', async () => {
        const session = Session.start(root);
        const page = 'child';
        await session.send({ command: 'vyrenvcheck', page, args: { type: 'slow', app: 'vyr' } });
        await held();
        await session.send({
            command: 'closechildwindow',
            page,
            args: { type: 'vyrrunningcheck' },
        });
        expect((await session.send({ command: 'getvyrenvcheckedresult' })).result).toBe('error');
        await release();
        await session.send({ command: 'vyrenvcheck', page, args: { type: 'quick', app: 'vyr' } });
        await session.callback(endCallback);
        const told = session.events.filter(({ callback }) => callback === endCallback);
        expect(told.map(({ result }) => result.cmd)).toEqual(['quick']);
        await session.close();
    });

    test('leaves the page free for other commands', async () => {
        const session = Session.start(root);
        await session.send({
            command: 'vyrenvcheck',
            page: 'child',
            args: { type: 'slow', app: 'vyr' },
        });
        await held();
        expect((await session.send({ command: 'getDumpState' })).result.enable).toBe(true);
        await release();
        expect((await session.callback(endCallback)).result.cmd).toBe('slow');
        await session.close();
    });

    test('and never ends is ended with the program, half a minute later', async () => {
        const args = { type: 'slow', app: 'vyr' };
        const began = Date.now();
        const end = await runCommand(root, 'vyrenvcheck', args, {
            page: 'child',
            timeoutMs: 120_000,
        });
        expect(Date.now() - began).toBeGreaterThan(29_000);
        expect(end).toMatchObject({ status: 0, answer: { result: 'success' } });
        expect(end.events.filter(({ type }) => type === 'callback')).toEqual([]);
    });
});

test('a check that nobody waits for is completed before the program ends', async () => {
    await root.writeFile(toolPath, `${toolScript}sleep 0.5\ntouch ~/ended\n`, { mode: 0o755 });
    const end = await runCommand(root, 'vyrenvcheck', { type: 't', app: 'vyr' }, { trace: true });
    expect(end.events.filter(({ type }) => type === 'started')).toEqual([
        {
            type: 'started',
            program: toolPath,
            arguments: ['t', 'vyr', ''],
            workingDirectory: '',
            detached: false,
        },
    ]);
    expect(await root.exists('/home/user/ended')).toBe(true);
});

test('runfirefoxplugin opens the plug-in check page in the browser', async () => {
    const end = await runCommand(root, 'runfirefoxplugin', {}, { trace: true });
    expect(end.events).toEqual([
        {
            type: 'opened',
            url:
                'file:///suite/office/addons/vyrassistanttool/officeassistant/' +
                'resource/html/vyrNpEnvCheck.html',
        },
        { type: 'answer', id: null, page: 'main', command: 'runfirefoxplugin', result: 'success' },
    ]);
});
