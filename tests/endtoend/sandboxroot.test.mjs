import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

import { afterEach, expect, test } from 'vitest';

import { SandboxRoot } from './sandboxroot.mjs';
import { copySuite } from './sandboxmounts.mjs';

let root;

afterEach(async () => {
    await root?.dispose();
    root = undefined;
});

test('what a program writes is seen by the test and by the next program', async () => {
    root = await SandboxRoot.create();
    await root.run(['bash', '-c', 'echo one > ~/a; echo two > /tmp/b; echo three > /opt/orvane/c']);
    expect(await root.readFile('/home/user/a')).toBe('one\n');
    expect(await root.readFile('/opt/orvane/c')).toBe('three\n');
    expect((await root.run(['cat', '/tmp/b'])).stdout).toBe('two\n');
});

test('nothing of the machine can be written or found at home', async () => {
    root = await SandboxRoot.create();
    const script =
        'for d in / /usr /etc /var /usr/bin; do touch $d/x && echo wrote $d; done;' +
        ' ls -A ~ /tmp; ls -A /usr/share/applications /var/log';
    const { stdout } = await root.run(['bash', '-c', script]);
    expect(stdout).toBe('/home/user:\n\n/tmp:\n/usr/share/applications:\n\n/var/log:\nvyrlog\n');
    expect(fs.existsSync('/x')).toBe(false);
});

test.each([
    ['user', 1000, '/home/user'],
    ['root', 0, '/root'],
])('the user %s has its own id and home', async (user, id, home) => {
    root = await SandboxRoot.create({ user });
    const { stdout } = await root.run(['bash', '-c', 'id -un; id -u; echo $USER; pwd; echo ~']);
    expect(stdout).toBe(`${user}\n${id}\n${user}\n${home}\n${home}\n`);
});

test('a file without read permission cannot be read, whoever runs the tests', async () => {
    root = await SandboxRoot.create({ user: 'root' });
    await root.writeFile('/root/secret', 'x', { mode: 0 });
    expect((await root.run(['cat', '/root/secret'])).status).toBe(1);
});

test('the environment has no variables of the tests, no bus and no display', async () => {
    root = await SandboxRoot.create({ env: { EXTRA: '1' } });
    const { stdout } = await root.run(['env'], { env: { LANG: 'C', SHELL: undefined } });
    const names = stdout
        .trim()
        .split('\n')
        .map((line) => line.split('=')[0])
        .sort();
    expect(names.filter((name) => !name.endsWith('SAN_OPTIONS'))).toEqual([
        'EXTRA',
        'HOME',
        'LANG',
        'LOGNAME',
        'PATH',
        'PWD',
        'TZ',
        'USER',
        'XDG_RUNTIME_DIR',
    ]);
    expect(stdout).toContain('LANG=C\n');
});

test('only the loopback network is there', async () => {
    root = await SandboxRoot.create();
    const { stdout } = await root.run(['cat', '/proc/net/dev']);
    const names = stdout
        .split('\n')
        .slice(2, -1)
        .map((line) => line.trim().split(':')[0]);
    expect(names).toEqual(['lo']);
});

test('a fake comes before the real program and records its arguments', async () => {
    root = await SandboxRoot.create();
    await root.recordingFake('xdg-open', { output: 'opened\n', status: 4 });
    const end = await root.run(['bash', '-c', 'xdg-open "a b" ""; xdg-open; xdg-open $\'c\\nd\'']);
    expect(end).toMatchObject({ status: 4, stdout: 'opened\nopened\nopened\n' });
    expect(await root.callsOf('xdg-open')).toEqual([['a b', ''], [], ['c\nd']]);
    expect(await root.callsOf('never')).toEqual([]);
});

test('a hidden program is missing while the others work', async () => {
    root = await SandboxRoot.create({ hide: ['/usr/bin/gio'] });
    const script = '[ -e /usr/bin/gio ] || echo missing; which awk';
    const { stdout } = await root.run(['bash', '-c', script]);
    expect(stdout).toBe('missing\n/usr/bin/awk\n');
});

test('a run that takes too long is ended with everything it started', async () => {
    root = await SandboxRoot.create();
    const script = '(while :; do date +%N > /tmp/alive; done) & echo begun; sleep 1000';
    const started = root.spawn(['bash', '-c', script]);
    await new Promise((resolve) => started.onStdout(resolve));
    await expect(started.waitForExit(100)).rejects.toThrow(/100 ms[^]*begun/);
    await root.writeFile('/tmp/alive', 'mark');
    await new Promise((resolve) => setTimeout(resolve, 100));
    expect(await root.readFile('/tmp/alive')).toBe('mark');
});

test('a started process takes input until its end is given', async () => {
    root = await SandboxRoot.create();
    const started = root.spawn(['cat']);
    await started.write('one\n');
    await started.write('x'.repeat(3_000_000));
    started.endInput('\n');
    const end = await started.waitForExit(90_000);
    expect(end.stdout.length).toBe(3_000_005);
});

test('a process can be ended at any moment of its start', async () => {
    root = await SandboxRoot.create();
    for (let delay = 0; delay < 30; ++delay) {
        const started = root.spawn(['sleep', '1000']);
        await new Promise((resolve) => setTimeout(resolve, delay));
        await started.kill();
        expect(started.isRunning).toBe(false);
    }
});

test('disposing ends what still runs and removes what a test made unreadable', async () => {
    root = await SandboxRoot.create();
    const started = root.spawn(['sleep', '1000']);
    const script = 'mkdir -p /tmp/a/b && touch /tmp/a/b/c && chmod 0 /tmp/a/b /tmp/a';
    await root.run(['bash', '-c', script]);
    const host = root.hostPath('/tmp');
    await root.dispose();
    root = undefined;
    expect(started.isRunning).toBe(false);
    expect(fs.existsSync(host)).toBe(false);
});

test('paths outside the private directories are refused', async () => {
    root = await SandboxRoot.create();
    await expect(root.writeFile('/etc/x', '')).rejects.toThrow(/not in a private directory/);
    await expect(root.writeFile('/tmp/../etc/x', '')).rejects.toThrow(/not in a private directory/);
});

test('a copy of the suite shares only its large files', () => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'suitecopy-'));
    try {
        fs.mkdirSync(path.join(folder, 'from/office'), { recursive: true });
        fs.writeFileSync(path.join(folder, 'from/office/small.sh'), '#!/bin/sh\n', { mode: 0o755 });
        fs.writeFileSync(path.join(folder, 'from/office/large'), Buffer.alloc(100_000));
        const large = copySuite(path.join(folder, 'from'), path.join(folder, 'to'));
        expect([...large.keys()]).toEqual(['office/large']);
        expect(fs.statSync(path.join(folder, 'to/office/large')).size).toBe(0);
        expect(fs.statSync(path.join(folder, 'to/office/small.sh')).mode & 0o777).toBe(0o755);
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
});
