import { afterEach, beforeEach, expect, test } from 'vitest';

import { Session } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const tools = [
    'top',
    'free',
    'fc-list',
    'tar',
    'gzip',
    'gio',
    'xdg-open',
    'awk',
    'mawk',
    'sort',
    'uname',
    'env',
    'plocate',
].map((name) => `/usr/bin/${name}`);
const kept = '/home/user/kept.docx';

let root;
let session;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true, hide: tools });
    await root.writeFile(kept, 'mine');
    session = Session.start(root);
});

afterEach(async () => root.dispose());

async function resultOf(command, options) {
    return (await session.send({ command, ...options })).result;
}

test('without its tools every probe and listing has an answer', async () => {
    for (const command of ['getcpuinfo', 'getmemoryinfo']) {
        expect(Object.values((await resultOf(command))[0])).toEqual(['']);
    }
    expect(Object.keys(await resultOf('getcomputermemory'))).not.toEqual([]);
    expect(Object.keys(await resultOf('stratcheckenv'))).not.toEqual([]);
    expect(Object.keys(await resultOf('stratextractfileinfo'))).not.toEqual([]);
    expect(await resultOf('getassomime')).toHaveLength(3);
    expect(await resultOf('getassoopen')).toHaveLength(3);
    expect(await resultOf('fixfouricon')).toBe('success');
    expect((await session.close()).status).toBe(0);
});

test('without its tools a report has its sections', async () => {
    await resultOf('exportsysinfo', { choose: ['/home/user/report'] });
    const report = await root.readFile('/home/user/report');
    expect(report.match(/-begin/g).length).toBeGreaterThan(5);
    expect((await session.close()).status).toBe(0);
});

test('without tar and gzip no archive is built, and the sources stay', async () => {
    const target = '/home/user/feedback';
    const args = { archiveSample: kept, archiveSysInfo: true };
    expect(await resultOf('archivepackage', { choose: [target], args })).toBe(
        Buffer.from(target).toString('base64'),
    );
    expect((await session.close()).status).toBe(0);
    expect(await root.exists(`${target}.tar.gz`)).toBe(false);
    expect(await root.readFile(kept)).toBe('mine');
});

test('without plocate a search still finds files', async () => {
    await session.send({ command: 'startsearchfile', args: { keyword: 'kept' } });
    const { result } = await session.callback('startsearchfileCallBack');
    expect(Buffer.from(Object.keys(result)[0], 'base64').toString()).toBe('kept.docx');
    await session.callback('searchfilefinish');
    expect((await session.close()).status).toBe(0);
});
