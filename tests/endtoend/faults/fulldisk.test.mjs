import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';
import { onSmallDisk, resultIn, staging, workDirectory } from './faults.mjs';

const smallSize = 64 * 1024;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

test('a report on a full disk is answered and leaves the files beside it', async () => {
    const end = await onSmallDisk(
        root,
        '/home/user/out',
        smallSize,
        `
        echo mine > ~/out/kept; fill
        assistantctl --choose ~/out/report exportsysinfo && echo "lived"
        cat ~/out/kept`,
    );
    expect(end.stderr).toBe('');
    expect(resultIn(end.stdout, 'exportsysinfo')).toBe('success');
    expect(end.stdout).toContain('lived\nmine\n');
});

test('an existing report keeps its text when the disk is full', async () => {
    const end = await onSmallDisk(
        root,
        '/home/user/out',
        smallSize,
        `
        echo "an earlier report" > ~/out/report; fill
        assistantctl --choose ~/out/report exportsysinfo
        head -n 1 ~/out/report`,
    );
    expect(resultIn(end.stdout, 'exportsysinfo')).toBe('success');
    expect(end.stdout).toContain('\nan earlier report\n');
});

test('a list of permissions on a full disk keeps what its file held', async () => {
    const end = await onSmallDisk(
        root,
        '/home/user/out',
        smallSize,
        `
        echo "an earlier list" > ~/out/list; fill
        assistantctl --choose ~/out/list exportoftenfileperm && echo "lived"
        head -n 1 ~/out/list`,
    );
    expect(resultIn(end.stdout, 'exportoftenfileperm')).toBe('success');
    expect(end.stdout).toContain('lived\nan earlier list\n');
});

test('scripts that cannot be staged on a full disk are not run half', async () => {
    const end = await onSmallDisk(
        root,
        workDirectory,
        smallSize,
        `
        mkdir ${staging}; echo mine > ${workDirectory}/kept; fill
        for command in getassomime getassoopen getdesktopiconfile fixfouricon fileassorepair \\
                stratcheckenv; do
            assistantctl --trace $command || echo "failed: $command"
        done
        cat ${workDirectory}/kept`,
    );
    expect(end.stdout).not.toContain('failed:');
    // The scripts could not be written, so none may have been started.
    expect(end.stdout).not.toContain('"type":"started"');
    expect(resultIn(end.stdout, 'getassomime')).toBeUndefined();
    expect(resultIn(end.stdout, 'getdesktopiconfile').icon).toBe('');
    expect(resultIn(end.stdout, 'stratcheckenv')).toHaveProperty('sysinfo');
    expect(end.stdout).toMatch(/mine\n$/);
});

test('an archive on a full disk leaves its sources and what lies beside it', async () => {
    await root.run(['bash', '-c', 'head -c 300000 /dev/urandom > ~/a.vyr']);
    const end = await onSmallDisk(
        root,
        '/home/user/out',
        smallSize,
        `
        echo mine > ~/out/kept
        assistantctl --choose ~/out/report archivepackage archiveSample=$HOME/a.vyr \\
            archiveSysInfo=yes && echo "lived"
        cat ~/out/kept; stat -c %s ~/a.vyr`,
    );
    expect(resultIn(end.stdout, 'archivepackage')).toBe(
        Buffer.from('/home/user/out/report').toString('base64'),
    );
    expect(end.stdout).toContain('lived\nmine\n300000\n');
});

test('an archive whose work directory is full is answered and its sources stay', async () => {
    await root.run(['bash', '-c', 'head -c 300000 /dev/urandom > ~/a.vyr']);
    const end = await onSmallDisk(
        root,
        workDirectory,
        smallSize,
        `
        mkdir ${workDirectory}/dump; echo dump > ${workDirectory}/dump/vyr_1.dmp; fill
        assistantctl --choose ~/report archivepackage archiveSample=$HOME/a.vyr \\
            archiveSysInfo=yes archiveDumpInfo:=true && echo "lived"
        cat ${workDirectory}/dump/vyr_1.dmp; stat -c %s ~/a.vyr`,
    );
    expect(resultIn(end.stdout, 'archivepackage')).toBe(
        Buffer.from('/home/user/report').toString('base64'),
    );
    expect(end.stdout).toContain('lived\ndump\n300000\n');
});

test.each(['755', '555'])(
    'the updater’s configuration is not lost on a full disk, in a directory of mode %s',
    async (mode) => {
        const end = await onSmallDisk(
            root,
            '/home/user/out',
            smallSize,
            `
            printf '[update]\\nchannel=beta\\n[other]\\nkept=yes\\n' > ~/out/update.cfg; fill
            chmod ${mode} ~/out
            HELIO_UPDATE_CFG=~/out/update.cfg assistantctl changeupdateconfig 'keyvalue=a$${'x'.repeat(5000)}'
            cat ~/out/update.cfg; ls -A ~/out`,
        );
        expect(resultIn(end.stdout, 'changeupdateconfig')).toBe('success');
        expect(end.stdout).toContain('channel=beta\n');
        expect(end.stdout).toContain('[other]\nkept=yes\nfilling\nupdate.cfg\n');
    },
);
