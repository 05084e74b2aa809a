import fs from 'node:fs';
import path from 'node:path';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const settings = '/home/user/.config/Orvane/Office.conf';
const trace = '/tmp/trace';
const longAgo = new Date('2001-02-03T04:05:06Z');

/** Calls that write by their nature, and those that open. "?" lets one be missing on a machine. */
const traced = [
    ...['open', 'openat', 'openat2', 'creat', 'rename', 'renameat', 'renameat2', 'link', 'linkat'],
    ...['symlink', 'symlinkat', 'unlink', 'unlinkat', 'rmdir', 'mkdir', 'mkdirat', 'mknod'],
    ...['mknodat', 'chmod', 'fchmod', 'fchmodat', 'fchmodat2', 'chown', 'fchown', 'lchown'],
    ...['fchownat', 'utime', 'utimes', 'futimesat', 'utimensat', 'truncate', 'ftruncate'],
    ...['fallocate', 'setxattr', 'lsetxattr', 'fsetxattr', 'removexattr', 'lremovexattr'],
    ...['fremovexattr', 'copy_file_range', 'sendfile', 'bind'],
];
const opening = /^\d+ +(?:open|openat|openat2)\(/;
const forReading = /\bO_(?:RDONLY|PATH)\b/;
const creating = /\bO_(?:CREAT|TRUNC|TMPFILE|APPEND)\b/;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.makeDirectory('/home/user/Desktop');
    await root.makeDirectory('/home/user/.local/state');
    await root.writeFile('/home/user/.config/mimeapps.list', '[Default Applications]\n');
    await root.writeFile(settings, '[Version]\n', { mode: 0o666 });
});

afterEach(async () => root.dispose());

/** Runs the doctor under strace: its status and output, and the calls that write or could. */
async function tracedDoctor(words) {
    const calls = traced.map((call) => `?${call}`).join(',');
    const program = ['/suite/office/assistantctl', 'doctor', ...words];
    const strace = ['strace', '-f', '-y', '-qq', '-o', trace, '-e', `trace=${calls}`];
    const { status, stdout, stderr } = await root.run([...strace, ...program]);
    const lines = (await root.readFile(trace)).split('\n').filter((line) => / \w+\(/.test(line));
    const opened = lines.filter((line) => opening.test(line));
    const writes = lines.filter(
        (line) => !opening.test(line) || !forReading.test(line) || creating.test(line),
    );
    return {
        status,
        stdout,
        stderr,
        opened,
        writes: writes.filter((l) => !l.includes('"/dev/null"')),
    };
}

/** Everything about each file of the home directory that a write would change. */
function snapshot() {
    const home = root.hostPath('/home');
    return fs
        .readdirSync(home, { recursive: true, encoding: 'utf8' })
        .sort()
        .map((name) => {
            const { ino, mode, uid, gid, size, atimeMs, mtimeMs, ctimeMs } = fs.lstatSync(
                path.join(home, name),
            );
            return [name, ino, mode, uid, gid, size, atimeMs, mtimeMs, ctimeMs];
        });
}

/** A file system that notes times of access only now and then does so for these. */
function makeOld() {
    const home = root.hostPath('/home');
    for (const name of fs.readdirSync(home, { recursive: true, encoding: 'utf8' })) {
        fs.utimesSync(path.join(home, name), longAgo, longAgo);
    }
}

test.each([
    [[], `Every user of this computer can change ${settings}`],
    [['--fix', '--dry-run'], `set rights: ${settings} 0664`],
])('the doctor with %j writes nothing', async (words, said) => {
    makeOld();
    const before = snapshot();
    const { status, stdout, opened, writes } = await tracedDoctor([...words]);
    expect(status).toBe(1);
    expect(stdout).toContain(said);
    expect(opened.some((line) => line.includes(settings))).toBe(true);
    expect(writes).toEqual([]);
    expect(snapshot()).toEqual(before);
});

test('the tracer sees what a repair writes', async () => {
    const { status, writes } = await tracedDoctor(['--fix', '--yes', 'permissions.open']);
    expect(status).toBe(0);
    expect(writes.some((line) => line.includes('/office-assistant/repairs'))).toBe(true);
    expect(writes.some((line) => /\bf?chmod(at)?\(/.test(line))).toBe(true);
});
