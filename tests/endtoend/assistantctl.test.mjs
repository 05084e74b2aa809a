import { afterEach, beforeEach, expect, test } from 'vitest';

import { parseEvents, runCommand, Session } from './assistantctl.mjs';
import { SandboxRoot } from './sandboxroot.mjs';

const echo = `#!/usr/bin/python3
import json, sys
for line in sys.stdin:
    try:
        request = json.loads(line)
    except ValueError:
        print(json.dumps({"type": "error", "id": None, "message": "not JSON"}), flush=True)
        continue
    if "until" in request:
        print(json.dumps({"type": "waited", "timeout": True}), flush=True)
        continue
    print(json.dumps({"type": "callback", "page": "main", "callback": "tip", "result": 1}))
    print(json.dumps({"type": "answer", "id": request["id"], "result": request}), flush=True)
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await root.makeDirectory('/tmp/office');
    root.bind(root.hostPath('/tmp'), '/suite');
});

afterEach(async () => root.dispose());

async function standInProgram(script) {
    await root.writeFile('/tmp/office/assistantctl', script, { mode: 0o755 });
}

test('the driver passes options and arguments as the command line wants them', async () => {
    await standInProgram('#!/bin/bash\nprintf "%s\\n" "$@" >&2\nexit 3\n');
    const options = {
        page: 'child',
        choose: ['/tmp/a', '/tmp/b'],
        wait: 5,
        until: 'tip',
        open: true,
        trace: true,
    };
    const end = await runCommand(root, 'router', { page: 'a b', n: 1, list: ['x'] }, options);
    expect(end.status).toBe(3);
    expect(end.answer).toBeUndefined();
    expect(end.stderr.split('\n').slice(0, -1)).toEqual([
        '--page',
        'child',
        '--choose',
        '/tmp/a',
        '--choose',
        '/tmp/b',
        '--wait',
        '5',
        '--until',
        'tip',
        '--open',
        '--trace',
        'router',
        'page=a b',
        'n:=1',
        'list:=["x"]',
    ]);
});

test('a session matches answers, callbacks and errors to their requests', async () => {
    await standInProgram(echo);
    const session = Session.start(root);
    expect((await session.send({ command: 'one', args: {} })).result.command).toBe('one');
    await session.sendLine('{');
    expect((await session.error()).message).toBe('not JSON');
    expect((await session.send({ command: 'two', id: 'x' })).id).toBe('x');
    expect((await session.callback('tip')).result).toBe(1);
    expect((await session.callback('tip')).result).toBe(1);
    await expect(session.callback('tip', { timeoutMs: 100 })).rejects.toThrow(/did not come true/);
    expect((await session.until('tip', 10)).timeout).toBe(true);
    expect((await session.close()).status).toBe(0);
});

test('a session that dies fails at once instead of timing out', async () => {
    await standInProgram('#!/bin/bash\nread -r line\necho gone >&2\nexit 5\n');
    const session = Session.start(root);
    await expect(session.send({ command: 'any' })).rejects.toThrow(
        /ended before the answer.*gone/s,
    );
});

test('output that is not an event is an error', () => {
    expect(() => parseEvents('{"type":"answer"}\nQt says something\n')).toThrow();
    expect(() => parseEvents('{"id":1}\n')).toThrow(/without type/);
});
