import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { openDialog, runCommand, Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const workDirectory = '/home/user/.local/share/Orvane/tmp';
const dumpDirectory = `${workDirectory}/dump`;
const target = '/home/user/report';
/** Members of the archive carry the archive directory's path. */
const memberPrefix = 'home/user/.local/share/Orvane/tmp/archive/';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.recordingFake('xdg-open');
    // Each test writes the suite's settings that it needs.
    if (await root.exists('/suite/office/cfgs')) await root.remove('/suite/office/cfgs');
});

afterEach(async () => root.dispose());

const pack = (args = {}, options = {}) =>
    runCommand(root, 'archivepackage', args, { choose: [target], trace: true, ...options });
const started = (end) => end.events.find(({ type }) => type === 'started');

/** Names in the archive, without their directory. */
async function members(archive = `${target}.tar.gz`) {
    const end = await root.run(['tar', '-tzf', archive]);
    expect(end).toMatchObject({ status: 0, stderr: '' });
    return end.stdout
        .split('\n')
        .filter((name) => name !== '' && name !== memberPrefix)
        .map((name) => name.replace(memberPrefix, ''))
        .sort();
}

async function member(name) {
    const end = await root.run(['tar', '-xzOf', `${target}.tar.gz`, memberPrefix + name]);
    expect(end.status).toBe(0);
    return end.stdout;
}

describe('choosing files', () => {
    test('a sample is one of the suite’s documents', async () => {
        await root.writeFile('/home/user/样本 a.vyr', 'x');
        const end = await runCommand(
            root,
            'choosesamplefile',
            {},
            { choose: ['/home/user/样本 a.vyr'], trace: true },
        );
        expect(end.answer.result).toBe(base64('/home/user/样本 a.vyr'));
        expect(end.events[0]).toEqual(
            openDialog('/home/user/样本 a.vyr', [
                'VYR/Word Files(*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm)',
                'SHW/PowerPoint Files(*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx *.potx)',
                'TBL/Excel Files(*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx *.xltm *.xlsb)',
            ]),
        );
    });

    test('an attachment is any file', async () => {
        await root.writeFile('/home/user/b.png', 'x');
        const end = await runCommand(
            root,
            'chooseattachment',
            {},
            { choose: ['/home/user/b.png'], trace: true },
        );
        expect(end.answer.result).toBe(base64('/home/user/b.png'));
        expect(end.events[0]).toMatchObject({
            mode: 'open',
            caption: 'Open File',
            directory: '/home/user',
            filters: [],
        });
    });

    test.each(['choosesamplefile', 'chooseattachment', 'archivepackage'])(
        'a cancelled dialog of %s is an error',
        async (command) => {
            const end = await runCommand(root, command, {}, { trace: true });
            expect(end).toMatchObject({ status: 1, answer: { result: 'error' } });
            expect(end.events.map(({ type }) => type)).toEqual(['dialog', 'answer']);
        },
    );
});

describe('the archive', () => {
    test('/home/user/report becomes /home/user/report.tar.gz and is opened', async () => {
        const end = await pack({ archiveType: 'crash', archiveDescribe: 'it failed' });
        expect(end).toMatchObject({ status: 0, answer: { result: base64(target) } });
        expect(end.events[0]).toMatchObject({
            type: 'dialog',
            mode: 'save',
            caption: 'Save File',
            name: 'questionfeedback',
        });
        expect(started(end)).toEqual({
            type: 'started',
            detached: true,
            workingDirectory: '',
            program: `${workDirectory}/officeassis_script/archivepackage.sh`,
            arguments: [
                target,
                'crash',
                'it failed',
                '',
                'false',
                'false',
                'false',
                '',
                '/suite/office',
            ],
        });
        expect(await members()).toEqual(['describe.txt']);
        expect(await member('describe.txt')).toBe(
            `name: ${target}\ntype: crash\ndescribe: it failed\n`,
        );
        expect(await root.callsOf('xdg-open')).toEqual([[`${target}.tar.gz`]]);
    });

    test('a description with line breaks is one line of describe.txt', async () => {
        await pack({ archiveDescribe: 'first line\nsecond   line\n\nthird' });
        expect(await member('describe.txt')).toContain('describe: first line second line third\n');
    });

    test('sample a.vyr and attachment 2 b.png give the file list ;a.vyr;b.png', async () => {
        const end = await pack({ archiveSample: 'a.vyr', archiveAttach2: 'b.png' });
        expect(started(end).arguments[3]).toBe(';a.vyr;b.png');
    });

    test('holds sample and attachments, and skips what is missing or no file', async () => {
        await root.writeFile('/home/user/a.vyr', 'a sample');
        await root.writeFile('/home/user/b.png', 'a picture');
        await root.makeDirectory('/home/user/folder');
        await pack({
            archiveSample: '/home/user/a.vyr',
            archiveAttach1: '/home/user/none',
            archiveAttach2: '/home/user/b.png',
            archiveAttach3: '/home/user/folder',
        });
        expect(await members()).toEqual(['a.vyr', 'b.png', 'describe.txt']);
        expect(await member('a.vyr')).toBe('a sample');
        expect((await member('describe.txt')).split('\n').slice(3, -1)).toEqual([
            'attachfile: /home/user/a.vyr',
            'attachfile: /home/user/b.png',
        ]);
    });

    test('an unreadable attachment is left out of it and the rest is packed', async () => {
        await root.writeFile('/home/user/a.vyr', 'a sample');
        await root.writeFile('/home/user/closed.png', 'a picture', { mode: 0o000 });
        await pack({ archiveSample: '/home/user/a.vyr', archiveAttach1: '/home/user/closed.png' });
        expect(await members()).toEqual(['a.vyr', 'describe.txt']);
    });

    test('archiveSysInfo with the text false still writes the report', async () => {
        const end = await pack({ archiveSysInfo: 'false' });
        expect(started(end).arguments[4]).toBe('true');
        expect(await members()).toEqual(['describe.txt', 'sysinfo.txt']);
        const report = await member('sysinfo.txt');
        for (const section of ['kernel', 'browser', 'cpu', 'font', 'user', 'env', 'otheroffice']) {
            expect(report).toContain(`${section}-begin`);
            expect(report).toContain(`${section}-end`);
        }
    });

    test('a report is appended to an earlier one, and packed only on request', async () => {
        await root.writeFile(`${workDirectory}/sysinfo.txt`, 'earlier\r\n');
        await pack();
        expect(await members()).toEqual(['describe.txt']);
        await pack({ archiveSysInfo: 'yes' });
        expect(await member('sysinfo.txt')).toMatch(/^earlier\r\n\*+kernel-begin/);
    });

    test('settings are packed where there are any', async () => {
        await root.writeFile('/home/user/.config/Orvane/Office.conf', '[6.0]\n');
        await root.writeFile('/suite/office/cfgs/setup.cfg', 'setup');
        await root.writeFile('/suite/office/cfgs/ome.ini', 'maker');
        const end = await pack({ archiveVyrInfo: true });
        expect(started(end).arguments.slice(4, 7)).toEqual(['false', 'true', 'false']);
        expect(await members()).toEqual(['Office.conf', 'describe.txt', 'ome.ini', 'setup.cfg']);
        expect((await member('describe.txt')).split('\n').slice(3, -1)).toEqual([
            'file:Office.conf',
            'file:oem.ini',
            'file:setup.cfg',
        ]);
    });

    test('settings come from the configured resources', async () => {
        await root.writeFile('/opt/orvane/office/cfgs/product.dat', 'product');
        const end = await pack(
            { archiveVyrInfo: 'true' },
            { env: { HELIO_RESOURCES: '/opt/orvane/office' } },
        );
        expect(started(end).arguments[8]).toBe('/opt/orvane/office');
        expect(await members()).toContain('product.dat');
    });

    test('vyr_3.dmp and vyr_3.dmp.old are both packed', async () => {
        for (const name of ['vyr_3.dmp', 'vyr_3.dmp.old', 'VYR_1.dmp', 'readme.txt']) {
            await root.writeFile(`${dumpDirectory}/${name}`, name);
        }
        const end = await pack({ archiveDumpInfo: true });
        expect(started(end).arguments[7].split(';').sort()).toEqual([
            '',
            `${dumpDirectory}/vyr_3.dmp`,
            `${dumpDirectory}/vyr_3.dmp.old`,
        ]);
        expect(await members()).toEqual(['describe.txt', 'vyr_3.dmp', 'vyr_3.dmp.old']);
    });

    test('dumps are not packed unasked, nor where there are none', async () => {
        await root.writeFile(`${dumpDirectory}/vyr_3.dmp`, 'x');
        await pack({ archiveDumpInfo: false });
        expect(await members()).toEqual(['describe.txt']);
        await root.remove(dumpDirectory);
        await pack({ archiveDumpInfo: true });
        expect(await members()).toEqual(['describe.txt']);
    });

    test('more dumps than one argument holds still give an archive', async () => {
        await root.makeDirectory(dumpDirectory);
        await root.run(
            [
                'bash',
                '-c',
                `cd ${dumpDirectory} && seq 1 100000 | sed 's/.*/vyr_&.dmp/' | xargs touch`,
            ],
            { timeoutMs: 120_000 },
        );
        const session = Session.start(root);
        await session.send({
            command: 'archivepackage',
            choose: [target],
            args: { archiveDumpInfo: true },
        });
        // The script opens the archive last, after copying thousands of files.
        await waitFor(async () => (await root.callsOf('xdg-open')).length > 0, {
            timeoutMs: 150_000,
            what: 'the archive',
        });
        const packed = await members();
        expect(packed).toContain('describe.txt');
        expect(packed.length).toBeGreaterThan(1000);
        await session.close();
    }, 300_000);

    test('what the page sends is never run as a command', async () => {
        const text = '$(touch /tmp/ran) `touch /tmp/ran`; touch /tmp/ran & *';
        await pack(
            { archiveType: text, archiveDescribe: text, archiveSample: text },
            { choose: ['/home/user/$(touch ran) *'] },
        );
        expect(await root.exists('/tmp/ran')).toBe(false);
        expect(await members('/home/user/$(touch ran) *.tar.gz')).toContain('describe.txt');
    });

    test('replaces the one before, and what was collected for it', async () => {
        await root.writeFile('/home/user/a.vyr', 'a sample');
        await pack({ archiveSample: '/home/user/a.vyr' });
        await pack();
        expect(await members()).toEqual(['describe.txt']);
    });
});

describe('faults', () => {
    test('on a full disk the command answers and the sources stay', async () => {
        await root.run(['bash', '-c', 'head -c 300000 /dev/urandom > ~/a.vyr']);
        root.smallDisk('/home/user/out', 64 * 1024);
        const end = await pack(
            { archiveSample: '/home/user/a.vyr' },
            { choose: ['/home/user/out/report'] },
        );
        expect(end).toMatchObject({
            status: 0,
            answer: { result: base64('/home/user/out/report') },
        });
        expect((await root.stat('/home/user/a.vyr')).size).toBe(300_000);
    });

    test('a file in place of the work directory: no report, and the command answers', async () => {
        await root.writeFile(workDirectory, 'in the way');
        const end = await pack({ archiveSysInfo: 'yes' });
        expect(end.answer.result).toBe(base64(target));
        expect(await root.readFile(workDirectory)).toBe('in the way');
    });

    test('a directory in place of the report stays', async () => {
        await root.makeDirectory(`${workDirectory}/sysinfo.txt`);
        const end = await pack({ archiveSysInfo: 'yes' });
        expect(end.answer.result).toBe(base64(target));
        expect(await members()).toEqual(['describe.txt']);
    });

    test('arguments of other kinds are read as text or truth', async () => {
        const end = await pack({
            archiveType: 7,
            archiveDescribe: null,
            archiveSample: [],
            archiveSysInfo: {},
            archiveVyrInfo: 0,
            archiveDumpInfo: 1,
        });
        expect(started(end).arguments.slice(1, 7)).toEqual(['7', '', '', 'false', 'false', 'true']);
    });
});
