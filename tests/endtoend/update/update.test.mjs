import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand, Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile, installUpdater, logFile, updaterPath, updaterCall } from './updater.mjs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const resultOf = async (command, args, options) =>
    (await runCommand(root, command, args, options)).answer.result;
const change = (keyvalue) => resultOf('changeupdateconfig', { keyvalue });

test('an update is supported when both updater and configuration are there', async () => {
    expect(await resultOf('getupdatesupport')).toBe(false);
    await installUpdater(root);
    expect(await resultOf('getupdatesupport')).toBe(false);
    await root.writeFile(configFile, '');
    expect(await resultOf('getupdatesupport')).toBe(true);
    await root.remove(updaterPath);
    expect(await resultOf('getupdatesupport')).toBe(false);
});

test('the configuration of another place is used where the host names one', async () => {
    await root.writeFile('/tmp/other.cfg', '[update]\nfrom=other\n');
    const env = { HELIO_UPDATE_CFG: '/tmp/other.cfg' };
    expect(await resultOf('getupdateconfig', {}, { env })).toEqual({ from: 'other' });
    expect(await resultOf('getupdateconfig')).toBe('error');
});

test('the configuration is an object of texts', async () => {
    await root.writeFile(
        configFile,
        'outside=1\n[update]\nb=two words\na=1\nlist=x, y\nsub\\k=v\n',
    );
    expect(await resultOf('getupdateconfig')).toEqual({ a: '1', b: 'two words', list: '' });
    await root.writeFile(configFile, '[other]\na=1\n');
    expect(await resultOf('getupdateconfig')).toEqual({});
});

test.each([
    ['zero bytes', Buffer.alloc(100_000)],
    ['brackets', '['.repeat(100_000)],
    ['bytes of any kind', Buffer.from(Array.from({ length: 65536 }, (_, i) => (i * 7919) >> 3))],
    ['a line without end', `[update]\na=${'\\'.repeat(1_000_001)}`],
])('a configuration of garbage (%s) is survived and can be changed', async (_, content) => {
    await root.writeFile(configFile, content);
    expect(typeof (await resultOf('getupdateconfig'))).toBe('object');
    expect(await change('fresh$value')).toBe('success');
    expect(await resultOf('getupdateconfig')).toMatchObject({ fresh: 'value' });
});

test('an unreadable configuration counts as empty and is kept', async () => {
    await root.writeFile(configFile, '[update]\na=1\n', { mode: 0 });
    expect(await resultOf('getupdateconfig')).toEqual({});
    expect(await change('a$2')).toBe('success');
    await root.run(['chmod', '600', configFile]);
    expect(await root.readFile(configFile)).toBe('[update]\na=1\n');
});

test('a$b stores b under update/a and leaves the rest', async () => {
    await root.writeFile(configFile, '[other]\nkept=1\n[update]\nold=2\n');
    expect(await change('a$b')).toBe('success');
    expect(await resultOf('getupdateconfig')).toEqual({ a: 'b', old: '2' });
    expect(await root.readFile(configFile)).toMatch(/\[other\]\nkept=1\n/);
});

test('a$ stores an empty value under a', async () => {
    await root.writeFile(configFile, '[update]\na=full\n');
    expect(await change('a$')).toBe('success');
    expect(await resultOf('getupdateconfig')).toEqual({ a: '' });
});

test.each(['ab', 'a$b$c', '', '$$'])('the argument "%s" is an error', async (keyvalue) => {
    await root.writeFile(configFile, '[update]\na=1\n');
    const end = await runCommand(root, 'changeupdateconfig', { keyvalue });
    expect(end.answer.result).toBe('error');
    expect(end.status).toBe(1);
    expect(await root.readFile(configFile)).toBe('[update]\na=1\n');
});

test('an absent argument is an error', async () => {
    expect(await resultOf('changeupdateconfig')).toBe('error');
});

test('a user’s file in a read-only directory can be changed', async () => {
    await root.writeFile(configFile, '[update]\na=1\n');
    await root.run(['chmod', '500', '/opt/orvane/vtool']);
    expect(await change('a$2')).toBe('success');
    expect(await resultOf('getupdateconfig')).toEqual({ a: '2' });
});

test('a missing configuration is an error, unsupported, and starts no daily report', async () => {
    await installUpdater(root);
    const session = Session.start(root);
    expect((await session.send({ command: 'getupdateconfig' })).result).toBe('error');
    expect((await session.send({ command: 'getupdatesupport' })).result).toBe(false);
    expect((await session.send({ command: 'testdailyreport' })).result).toBe('success');
    const changed = await session.send({
        command: 'changeupdateconfig',
        args: { keyvalue: 'a$b' },
    });
    expect(changed.result).toBe('success');
    expect(session.traced('started')).toEqual([]);
    await session.close();
    expect(await root.exists(configFile)).toBe(false);
    expect(await updaterCall(root)).toBeNull();
});

test.each([
    ['testupdate', '/from:manual', 'success'],
    ['testdailyreport', '/from:lumstart', 'success'],
    ['testuninstallreport', '/senduninstallinfo:true', 'success'],
    ['testinstallreport', '/sendinstallinfo:true', undefined],
])('%s launches the updater with %s', async (command, option, result) => {
    await installUpdater(root);
    await root.writeFile(configFile, '');
    const session = Session.start(root, { directory: '/tmp' });
    const answer = await session.send({ command });
    expect(answer.result).toBe(result);
    expect('result' in answer).toBe(result !== undefined);
    expect(session.traced('started')).toEqual([
        {
            type: 'started',
            program: updaterPath,
            arguments: [option],
            workingDirectory: '',
            detached: true,
        },
    ]);
    const call = await waitFor(() => updaterCall(root), { what: 'the call of the updater' });
    expect(call).toEqual({ args: [option], directory: '/tmp' });
    expect((await session.close()).status).toBe(0);
});

test('launching a missing updater reports no error', async () => {
    await root.writeFile(configFile, '');
    for (const command of ['testupdate', 'testdailyreport', 'testuninstallreport']) {
        expect(await resultOf(command)).toBe('success');
    }
    expect((await runCommand(root, 'testinstallreport')).status).toBe(0);
});

test('the daily report leaves its fixed date in the configuration', async () => {
    await installUpdater(root);
    await root.writeFile(configFile, '[update]\nkept=1\nusagecollected=2026-01-01 00:00:00\n');
    expect(await resultOf('testdailyreport')).toBe('success');
    expect(await resultOf('getupdateconfig')).toEqual({
        kept: '1',
        usagecollected: '2018-11-14 15:10:19',
    });
});

test.each([
    ['empty', '', ''],
    ['in UTF-8', '日本\n', '日本\n'],
    ['with other line ends', 'a\r\nb\r\n', 'a\nb\n'],
    ['with a zero byte', 'before\0after', 'before'],
    ['with bytes that are not text', Buffer.from([0x61, 0xff, 0x62]), 'a\ufffdb'],
])('a log %s is answered as base64', async (_, content, text) => {
    await root.writeFile(logFile, content);
    expect(await resultOf('getlogfile')).toBe(base64(text));
});

test('of a log of 50 MB the first 16 MiB are answered', async () => {
    const text = Buffer.from('2026-01-01 something happened – again\n'.repeat(1_250_000));
    await root.writeFile(logFile, text);
    const answered = Buffer.from(await resultOf('getlogfile'), 'base64');
    expect(answered.length).toBeGreaterThan(16 * 1024 * 1024 - 3);
    expect(answered.length).toBeLessThanOrEqual(16 * 1024 * 1024);
    expect(text.subarray(0, answered.length).equals(answered)).toBe(true);
});

test.each([
    ['missing', 'true'],
    ['a directory', `mkdir ${logFile}`],
    ['not readable', `touch ${logFile}; chmod 0 ${logFile}`],
    ['a pipe', `mkfifo ${logFile}`],
])('a log that is %s is an error', async (_, script) => {
    await root.run(['bash', '-c', script]);
    const end = await runCommand(root, 'getlogfile');
    expect(end.answer.result).toBe('error');
    expect(end.status).toBe(1);
});

test('clearing removes every file of the log directory and nothing else', async () => {
    const script =
        "cd /var/log/vyrlog; touch vyrupdate.log \"a b\" ./-rf '*' $'line\\nfeed';" +
        ' touch .hidden; mkdir -p sub; touch sub/kept; ln -s /tmp/outside link; touch /tmp/outside';
    await root.run(['bash', '-c', script]);
    expect(await resultOf('clearlogfile')).toBe('success');
    expect(await root.list('/var/log/vyrlog')).toEqual(['.hidden', 'sub']);
    expect(await root.exists('/var/log/vyrlog/sub/kept')).toBe(true);
    expect(await root.exists('/tmp/outside')).toBe(true);
    expect(await resultOf('getlogfile')).toBe('error');
    expect(await resultOf('clearlogfile')).toBe('success');
});

test('a log directory that cannot be changed or read keeps its files', async () => {
    await root.writeFile(logFile, 'kept');
    for (const mode of ['555', '000']) {
        await root.run(['chmod', mode, '/var/log/vyrlog']);
        expect(await resultOf('clearlogfile')).toBe('success');
    }
    await root.run(['chmod', '700', '/var/log/vyrlog']);
    expect(await root.readFile(logFile)).toBe('kept');
});
