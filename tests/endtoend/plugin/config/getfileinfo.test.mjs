import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { lines, runScript } from './scriptrunner.mjs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await root.writeFile('/home/user/.config/Orvane/Office.conf', 'x', { mode: 0o640 });
});

afterEach(async () => root.dispose());

const list = (...args) => runScript(root, 'getfileinfo.sh', args);
const listed = async () => lines(await root.readFile('/tmp/p'));

test.each([[[]], [['/tmp/p']]])('fewer than two arguments do nothing: %j', async (args) => {
    expect(await list(...args)).toMatchObject({ status: 0, stdout: '', stderr: '' });
    expect(await root.exists('/tmp/p')).toBe(false);
});

test('writes what ls -dl prints, in the order of the paths', async () => {
    const config = '/home/user/.config';
    const paths = [`${config}/Orvane/Office.conf`, config, `${config}/Orvane`];
    const end = await list('/tmp/p', ...paths);
    expect(end.stdout).toBe('');
    const expected = [];
    for (const path of paths) expected.push((await root.run(['ls', '-dl', path])).stdout.trimEnd());
    expect(await listed()).toEqual(expected);
    expect(expected[0]).toMatch(/^-rw-r----- 1 user user 1 .* \/home\/.*\/Office\.conf$/);
});

test('a second export is appended', async () => {
    await list('/tmp/p', '/home/user');
    await list('/tmp/p', '/home/user');
    expect(await listed()).toHaveLength(2);
});

test('a missing path adds no line and the others stay', async () => {
    const end = await list('/tmp/p', '/home/user/gone', '/home/user');
    expect(end.stderr).toContain('/home/user/gone');
    expect(await listed()).toHaveLength(1);
});

test('a path with a space counts as two', async () => {
    await root.writeFile('/home/user/a b', '');
    await root.writeFile('/home/user/a', '');
    await list('/tmp/p', '/home/user/a b');
    expect(await listed()).toEqual([expect.stringMatching(/ \/home\/user\/a$/)]);
});

test('an output name with a blank is one file when it comes as one argument', async () => {
    await list('/tmp/out file', '/home/user');
    expect(await root.list('/tmp')).toEqual(['out file']);
});

test('pattern characters and a leading hyphen belong to the name', async () => {
    await root.writeFile('/home/user/*', '');
    await root.writeFile('/home/user/-R', '');
    await list('/tmp/p', '/home/user/*', '-R');
    expect(await listed()).toEqual([
        expect.stringMatching(/ \/home\/user\/\*$/),
        expect.stringMatching(/ -R$/),
    ]);
});

test('nothing in a path is run', async () => {
    await list('/tmp/p', '$(touch${IFS}/tmp/ran)', '`touch', '/tmp/ran`', ';touch', '/tmp/ran');
    expect(await root.exists('/tmp/ran')).toBe(false);
});

test.each(['nobody reads', 'somebody reads'])('a pipe that %s is not written to', async (who) => {
    const reader = who === 'somebody reads' ? 'timeout 1 cat /tmp/p & ' : '';
    const end = await root.run(
        ['bash', '-c', `mkfifo /tmp/p; ${reader}bash /scripts/getfileinfo.sh /tmp/p ~; wait`],
        { timeoutMs: 10_000 },
    );
    expect(end.stdout).toBe('');
});
