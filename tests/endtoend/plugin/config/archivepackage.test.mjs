import fs from 'node:fs';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { lines, runScript } from './scriptrunner.mjs';

const workDirectory = '/home/user/.local/share/Orvane/tmp';
const collected = `${workDirectory}/archive`;
/** Where the tests unpack what the script packed. */
const unpacked = '/tmp/unpacked';
const archive = `${unpacked}${collected}`;
const resources = '/opt/orvane/office';
const longAgo = new Date('2001-02-03T04:05:06Z');

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await root.recordingFake('xdg-open');
});

afterEach(async () => root.dispose());

/** The script's nine arguments: harmless values, except those that the test sets. */
async function pack({
    name = '/home/user/report',
    type = 'crash',
    describe: text = 'it failed',
    files = '',
    systemInfo = 'false',
    suiteInfo = 'false',
    dumpInfo = 'false',
    dumps = '',
} = {}) {
    const end = await runScript(root, 'archivepackage.sh', [
        name,
        type,
        text,
        files,
        systemInfo,
        suiteInfo,
        dumpInfo,
        dumps,
        resources,
    ]);
    await root.makeDirectory(unpacked);
    await root.run(['/usr/bin/tar', '--force-local', '-xpzf', `${name}.tar.gz`, '-C', unpacked]);
    return end;
}

const describeFile = () => root.readFile(`${archive}/describe.txt`);

async function oldFile(inside, content, mode = 0o640) {
    await root.writeFile(inside, content, { mode });
    fs.utimesSync(root.hostPath(inside), longAgo, longAgo);
}

async function expectCopyKept(name, mode = 0o640) {
    const stat = await root.stat(`${archive}/${name}`);
    expect(stat.mode & 0o777).toBe(mode);
    expect(stat.mtime).toEqual(longAgo);
}

describe('arguments', () => {
    test.each([0, 1, 8, 10])('%i arguments do nothing and end with 0', async (count) => {
        await root.writeFile(`${collected}/kept`, 'x');
        const end = await runScript(root, 'archivepackage.sh', Array(count).fill('a'));
        expect(end).toMatchObject({ status: 0, stdout: '', stderr: '' });
        expect(await root.list(collected)).toEqual(['kept']);
        expect(await root.callsOf('xdg-open')).toEqual([]);
    });
});

describe('describe.txt', () => {
    test('holds name, type and description, a line each', async () => {
        await pack();
        expect(await describeFile()).toBe(
            'name: /home/user/report\ntype: crash\ndescribe: it failed\n',
        );
    });

    test('folds white space and line breaks of the values', async () => {
        await pack({ type: ' a  b ', describe: '\n first\tline \n\nsecond   line\n' });
        expect(await describeFile()).toBe(
            'name: /home/user/report\ntype: a b\ndescribe: first line second line\n',
        );
    });

    test('has no blank behind the label of an empty value', async () => {
        await pack({ type: '', describe: '' });
        expect(await describeFile()).toBe('name: /home/user/report\ntype:\ndescribe:\n');
    });

    test('treats what a page sends as text, never as a pattern or a command', async () => {
        const text =
            '* ? [a-z]* $(touch /tmp/ran) `touch /tmp/ran` ; touch /tmp/ran &' +
            ' "q" \'s\' \\n $HOME -e ~';
        await root.writeFile('/home/user/a', '');
        await pack({ type: '-n', describe: text, files: ';$(touch${IFS}/tmp/ran);`touch' });
        expect(await describeFile()).toBe(`name: /home/user/report\ntype: -n\ndescribe: ${text}\n`);
        expect(await root.exists('/tmp/ran')).toBe(false);
    });
});

describe('file list', () => {
    test('each file is copied with mode and times, printed and noted', async () => {
        await oldFile('/home/user/a.vyr', 'sample');
        await oldFile('/home/user/b.png', 'picture', 0o444);
        const end = await pack({ files: ';/home/user/a.vyr;/home/user/b.png' });
        expect(lines(end.stdout).slice(0, 3)).toEqual([
            ';/home/user/a.vyr;/home/user/b.png',
            '/home/user/a.vyr',
            '/home/user/b.png',
        ]);
        expect(lines(await describeFile()).slice(3)).toEqual([
            'attachfile: /home/user/a.vyr',
            'attachfile: /home/user/b.png',
        ]);
        expect(await root.readFile(`${archive}/a.vyr`)).toBe('sample');
        await expectCopyKept('a.vyr');
        await expectCopyKept('b.png', 0o444);
    });

    test('an empty list prints an empty line', async () => {
        expect((await pack()).stdout).toMatch(/^\n\/home\/user/);
    });

    test('a missing file is printed but neither copied nor noted', async () => {
        const end = await pack({ files: ';/home/user/gone' });
        expect(lines(end.stdout)[1]).toBe('/home/user/gone');
        expect(lines(await describeFile())).toHaveLength(3);
        expect(await root.list(archive)).toEqual(['describe.txt']);
    });

    test('a folder is not a file', async () => {
        await root.makeDirectory('/home/user/folder');
        await pack({ files: ';/home/user/folder' });
        expect(lines(await describeFile())).toHaveLength(3);
    });

    test('a path with a space is split', async () => {
        await root.writeFile('/home/user/a b.vyr', 'x');
        const end = await pack({ files: ';/home/user/a b.vyr' });
        expect(lines(end.stdout).slice(0, 3)).toEqual([
            ';/home/user/a b.vyr',
            '/home/user/a',
            'b.vyr',
        ]);
        expect(await root.list(archive)).toEqual(['describe.txt']);
    });

    test('a part of a path with a space is used if such a file exists', async () => {
        await root.writeFile('/home/user/a', 'first word');
        await pack({ files: ';/home/user/a b.vyr' });
        expect(lines(await describeFile()).slice(3)).toEqual(['attachfile: /home/user/a']);
    });

    test('empty pieces vanish', async () => {
        await root.writeFile('/home/user/a', '');
        const end = await pack({ files: ';;;/home/user/a;; ;' });
        expect(lines(end.stdout).slice(1, 3)).toEqual(['/home/user/a', `${collected}/`]);
    });

    test('a name with pattern characters means that one file', async () => {
        await root.writeFile('/home/user/a*.txt', 'chosen');
        await root.writeFile('/home/user/ab.txt', 'private');
        await pack({ files: ';/home/user/a*.txt' });
        expect(await root.list(archive)).toEqual(['a*.txt', 'describe.txt']);
    });

    test('a name that begins with a hyphen is a file, not an option', async () => {
        await root.writeFile('/home/user/-r', 'x');
        await pack({ files: ';-r' });
        expect(await root.list(archive)).toEqual(['-r', 'describe.txt']);
    });
});

describe('system information', () => {
    beforeEach(async () => oldFile(`${workDirectory}/sysinfo.txt`, 'report'));

    test('is copied with mode and times and noted when asked for', async () => {
        await pack({ systemInfo: 'true' });
        expect(lines(await describeFile()).slice(3)).toEqual(['file:sysinfo.txt']);
        await expectCopyKept('sysinfo.txt');
    });

    test.each(['false', '', 'True', '1', 'true '])('is left out for "%s"', async (flag) => {
        await pack({ systemInfo: flag });
        expect(await root.list(archive)).toEqual(['describe.txt']);
    });

    test('is not noted when the report is missing', async () => {
        await root.remove(`${workDirectory}/sysinfo.txt`);
        await pack({ systemInfo: 'true' });
        expect(lines(await describeFile())).toHaveLength(3);
    });
});

describe('suite information', () => {
    const files = ['ome.ini', 'feature.dat', 'product.dat', 'setup.cfg'];

    beforeEach(async () => {
        await oldFile('/home/user/.config/Orvane/Office.conf', 'settings', 0o666);
        for (const name of files) await oldFile(`${resources}/cfgs/${name}`, name, 0o666);
    });

    test('notes the files in order, ome.ini as oem.ini', async () => {
        await pack({ suiteInfo: 'true' });
        expect(lines(await describeFile()).slice(3)).toEqual([
            'file:Office.conf',
            'file:oem.ini',
            'file:feature.dat',
            'file:product.dat',
            'file:setup.cfg',
        ]);
        expect(await root.list(archive)).toEqual([
            'Office.conf',
            'describe.txt',
            'feature.dat',
            'ome.ini',
            'product.dat',
            'setup.cfg',
        ]);
    });

    test('keeps mode and times of all but feature.dat', async () => {
        await pack({ suiteInfo: 'true' });
        for (const name of ['Office.conf', 'ome.ini', 'product.dat', 'setup.cfg']) {
            await expectCopyKept(name, 0o666);
        }
        const stat = await root.stat(`${archive}/feature.dat`);
        expect(stat.mode & 0o777).toBe(0o600);
        expect(stat.mtime.getFullYear()).toBeGreaterThan(2001);
    });

    test.each([
        ['Office.conf', '/home/user/.config/Orvane/Office.conf', 'file:Office.conf'],
        ...files.map((name) => [
            name,
            `${resources}/cfgs/${name}`,
            name === 'ome.ini' ? 'file:oem.ini' : `file:${name}`,
        ]),
    ])('a missing %s is left out alone', async (_, path, line) => {
        await root.remove(path);
        await pack({ suiteInfo: 'true' });
        const noted = lines(await describeFile()).slice(3);
        expect(noted).toHaveLength(4);
        expect(noted).not.toContain(line);
    });

    test('is left out when not asked for', async () => {
        await pack({ suiteInfo: 'TRUE' });
        expect(await root.list(archive)).toEqual(['describe.txt']);
    });
});

describe('dumps', () => {
    const dumps = ';/home/user/dump/vyr_3.dmp;/home/user/dump/vyr_3.dmp.old';

    beforeEach(async () => {
        await oldFile('/home/user/dump/vyr_3.dmp', 'dump');
        await oldFile('/home/user/dump/vyr_3.dmp.old', 'old dump');
    });

    test('are copied with mode and times, printed and noted', async () => {
        const end = await pack({ dumpInfo: 'true', dumps });
        expect(lines(end.stdout).slice(1, 3)).toEqual(dumps.slice(1).split(';'));
        expect(lines(await describeFile()).slice(3)).toEqual([
            'dumpfile: /home/user/dump/vyr_3.dmp',
            'dumpfile: /home/user/dump/vyr_3.dmp.old',
        ]);
        await expectCopyKept('vyr_3.dmp');
        await expectCopyKept('vyr_3.dmp.old');
    });

    test('are neither printed nor copied when not asked for', async () => {
        const end = await pack({ dumps });
        expect(end.stdout).not.toContain('vyr_3');
        expect(await root.list(archive)).toEqual(['describe.txt']);
    });

    test('whose names are not UTF-8 are found by what reads alike', async () => {
        await root.run([
            'bash',
            '-c',
            `cd ~/dump; for byte in '\\xfe' '\\xff'; do
                printf "$byte" > "$(printf "vyr_[4].dmp.$byte")"
            done; touch vyr_4.dmp.x`,
        ]);
        const end = await pack({ dumpInfo: 'true', dumps: ';/home/user/dump/vyr_[4].dmp.\ufffd' });
        expect(lines(end.stdout)[1]).toBe('/home/user/dump/vyr_[4].dmp.\ufffd');
        expect(fs.readdirSync(root.hostPath(archive), 'latin1').sort()).toEqual([
            'describe.txt',
            'vyr_[4].dmp.\xfe',
            'vyr_[4].dmp.\xff',
        ]);
        expect(lines(await describeFile())).toHaveLength(5);
    });

    test('that vanished are printed only', async () => {
        const end = await pack({ dumpInfo: 'true', dumps: ';/home/user/dump/vyr_9.dmp' });
        expect(lines(end.stdout)[1]).toBe('/home/user/dump/vyr_9.dmp');
        expect(lines(await describeFile())).toHaveLength(3);
    });
});

describe('archive', () => {
    const members = async (file) => lines((await root.run(['tar', '-tzf', file])).stdout).sort();

    test('carries the absolute path of its directory without the leading slash', async () => {
        await root.writeFile('/home/user/a.vyr', 'sample');
        await pack({ files: ';/home/user/a.vyr' });
        const directory = collected.slice(1);
        expect(await members('/home/user/report.tar.gz')).toEqual([
            `${directory}/`,
            `${directory}/a.vyr`,
            `${directory}/describe.txt`,
        ]);
    });

    test('is listed member by member on standard output', async () => {
        const end = await pack();
        expect(lines(end.stdout)).toEqual(['', `${collected}/`, `${collected}/describe.txt`]);
    });

    test('is opened with the desktop, by its whole name', async () => {
        await pack({ name: '/home/user/my report;x' });
        expect(await root.exists('/home/user/my report;x.tar.gz')).toBe(true);
        expect(await root.callsOf('xdg-open')).toEqual([['/home/user/my report;x.tar.gz']]);
    });

    test('replaces what an earlier archive left behind', async () => {
        await root.writeFile(`${collected}/deep/old`, 'x');
        await pack();
        expect(await members('/home/user/report.tar.gz')).toHaveLength(2);
    });

    test('is built where a broken link stood', async () => {
        await root.makeDirectory(workDirectory);
        fs.symlinkSync('/nowhere', root.hostPath(collected));
        await pack();
        expect(await members('/home/user/report.tar.gz')).toHaveLength(2);
    });

    test('with a colon in a bare name is a local file, not one on another machine', async () => {
        await pack({ name: 'host:report' });
        expect(await members('/home/user/host:report.tar.gz')).toHaveLength(2);
    });
});

describe('privacy', () => {
    const modeOf = async (path) => (await root.stat(path)).mode & 0o777;

    test('only the user can read archive and work directory', async () => {
        await root.makeDirectory(workDirectory);
        await pack();
        expect(await modeOf('/home/user/report.tar.gz')).toBe(0o600);
        expect(await modeOf(workDirectory)).toBe(0o700);
        expect(await modeOf(archive)).toBe(0o700);
        expect(await modeOf(`${archive}/describe.txt`)).toBe(0o600);
    });

    test('report and collected files are gone after the archive is whole', async () => {
        await root.writeFile(`${workDirectory}/sysinfo.txt`, 'secret');
        await pack({ systemInfo: 'true' });
        expect(await root.list(archive)).toContain('sysinfo.txt');
        expect(await root.list(workDirectory)).toEqual([]);
    });

    test('a report that was not asked for stays', async () => {
        await root.writeFile(`${workDirectory}/sysinfo.txt`, 'secret');
        await pack();
        expect(await root.list(workDirectory)).toEqual(['sysinfo.txt']);
    });

    test('a report stays for another run that waits, which removes it', async () => {
        await root.writeFile(`${workDirectory}/sysinfo.txt`, 'secret');
        const twice = ['first', 'second'].map(
            (name) =>
                `bash /scripts/archivepackage.sh ~/${name} a b '' true false false '' ${resources} 9<&- &`,
        );
        // Neither begins before both have said that they may need the report.
        const waiting = "pgrep -fc '^flock -w '";
        const script = `exec 9< ${workDirectory}; flock 9
            ${twice.join('\n')}
            for ((n = 0; n < 3000; n++)); do [ "$(${waiting})" = 2 ] && break; sleep 0.01; done
            exec 9<&-; wait`;
        await root.run(['bash', '-c', script]);
        for (const name of ['first', 'second']) {
            const { stdout } = await root.run(['tar', '-tzf', `/home/user/${name}.tar.gz`]);
            expect(stdout).toContain('/sysinfo.txt');
        }
        expect(await root.list(workDirectory)).toEqual([]);
    });

    test('what the viewer writes is not made private', async () => {
        await root.fake('xdg-open', '#!/bin/bash\numask > /fakecalls/umask\n');
        await pack();
        expect(await root.readFile('/fakecalls/umask')).toBe('0022\n');
    });
});

describe('an earlier archive', () => {
    const earlier = '/home/user/report.tar.gz';

    beforeEach(async () => root.writeFile(earlier, 'earlier'));

    /** A tar that writes half an archive, then runs `rest`. */
    const halfTar = (rest) => root.fake('tar', `#!/bin/bash\necho half > "$4"\n${rest}\n`);

    test('survives a tar that fails, and is not opened', async () => {
        await halfTar('exit 2');
        expect((await pack()).status).toBe(1);
        expect(await root.readFile(earlier)).toBe('earlier');
        expect(await root.list('/home/user')).toEqual(['.local', 'report.tar.gz']);
        expect(await root.callsOf('xdg-open')).toEqual([]);
    });

    test('survives a kill, whose traces the next run clears', async () => {
        await halfTar('kill -KILL $PPID');
        await pack();
        expect(await root.readFile(earlier)).toBe('earlier');
        expect(await root.list('/home/user')).toHaveLength(3);
        await root.remove('/fakes/tar');
        await pack();
        expect(await root.list('/home/user')).toEqual(['.local', 'report.tar.gz']);
        expect(await root.list(archive)).toEqual(['describe.txt']);
        expect(await root.list(workDirectory)).toEqual([]);
    });

    test('is replaced where only the file can be written', async () => {
        await root.writeFile('/opt/orvane/shared/report.tar.gz', 'earlier');
        fs.chmodSync(root.hostPath('/opt/orvane/shared'), 0o555);
        await pack({ name: '/opt/orvane/shared/report' });
        expect(await root.list(archive)).toEqual(['describe.txt']);
        expect(await root.list(workDirectory)).toEqual([]);
    });

    test('is replaced behind a link', async () => {
        fs.symlinkSync('report.tar.gz', root.hostPath('/home/user/link.tar.gz'));
        await pack({ name: '/home/user/link' });
        expect(await root.list(archive)).toEqual(['describe.txt']);
        expect((await root.stat('/home/user/link.tar.gz')).isSymbolicLink()).toBe(true);
        expect((await root.stat(earlier)).size).toBeGreaterThan(20);
    });
});
