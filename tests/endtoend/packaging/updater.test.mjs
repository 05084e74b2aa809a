import fs from 'node:fs';
import path from 'node:path';
import { afterAll, afterEach, beforeAll, beforeEach, describe, expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { canInstall, InstalledTree, packagingFile, showInstalled } from './installedtree.mjs';

const updaterPath = '/opt/orvane/vtool/vyrupdate';
const logFile = '/var/log/vyrlog/vyrupdate.log';

/** What apt-cache prints of a package. */
const policy = (installed, candidate) => `#!/bin/bash
printf '%s\\n' "$*" >> /tmp/asked
printf 'office-assistant:\\n  Installed: %s\\n  Candidate: %s\\n' '${installed}' '${candidate}'
`;

describe.runIf(canInstall)('an installation as packages', () => {
    const installed = new InstalledTree();
    let root;

    beforeAll(async () => installed.install(), 300_000);

    afterAll(() => installed.dispose());

    beforeEach(async () => {
        root = await SandboxRoot.create();
        await showInstalled(root, installed);
        await root.fake('apt-cache', policy('1.0.0', '1.0.0'));
    });

    afterEach(async () => root.dispose());

    /** Sends a command with the package's own program. */
    async function send(command, ...args) {
        const end = await root.run(['/tmp/package/usr/bin/assistantctl', command, ...args]);
        expect(end.stderr).toBe('');
        return JSON.parse(end.stdout).result;
    }
    const logText = async () => Buffer.from(await send('getlogfile'), 'base64').toString();
    const log = async (line) => expect(await root.readFile(logFile)).toContain(line);

    test('has nothing outside /usr, and no updater beside the programs', () => {
        expect(fs.readdirSync(installed.directory)).toEqual(['usr']);
        expect(fs.existsSync(path.join(suiteDirectory, 'office/vyrupdate'))).toBe(false);
    });

    test('its shortcuts name the place of its programs', () => {
        const directory = installed.path('usr/lib/office-assistant/desktops');
        const entry = fs.readFileSync(path.join(directory, 'vyr-office-vyr.desktop'), 'utf8');
        expect(entry).toContain('Exec="/usr/lib/office-assistant/office/opencomponent" vyr %F\n');
        for (const [, place] of entry.matchAll(/^(?:TryExec|Icon)=(.*)$/gm)) {
            expect(fs.existsSync(installed.path(place)), place).toBe(true);
        }
    });

    test('makes an update supported, with a configuration that is read', async () => {
        expect(await send('getupdatesupport')).toBe(true);
        expect(await send('getupdateconfig')).toEqual({
            enabled: 'true',
            package: 'office-assistant',
            timeout: '20',
        });
    });

    test.each([
        [
            'testupdate',
            '/from:manual',
            'office-assistant 1.0.0 is installed, and the package sources offer nothing newer',
        ],
        ['testdailyreport', '/from:lumstart', 'but this updater sends none'],
        [
            'testinstallreport',
            '/sendinstallinfo:true',
            'an install report was asked for, but this updater sends none',
        ],
        [
            'testuninstallreport',
            '/senduninstallinfo:true',
            'an uninstall report was asked for, but this updater sends none',
        ],
    ])('%s leaves its outcome in the log that the view shows', async (command, option, outcome) => {
        // The command does not wait for the updater, and the sandbox would end it.
        const end = await root.run([
            'bash',
            '-c',
            `/tmp/package/usr/bin/assistantctl ${command}
            until grep -qsF '${outcome}' ${logFile}; do sleep 0.05; done`,
        ]);
        expect(end).toMatchObject({ status: 0, stderr: '' });
        const text = await logText();
        expect(text).toMatch(new RegExp(`started by user with ${option}\n`));
        expect(text).toContain(outcome);
    });

    test('a newer version is reported with how to install it', async () => {
        await root.fake('apt-cache', policy('1.0.0', '1.1.0'));
        await root.run([updaterPath, '/from:manual']);
        await log(
            'the package sources offer 1.1.0; install it with "apt install office-assistant"',
        );
        expect(await root.readFile('/tmp/asked')).toBe('policy office-assistant\n');
    });

    test('the configuration decides what is asked', async () => {
        await send('changeupdateconfig', 'keyvalue=package$other');
        await root.run([updaterPath, '/from:manual']);
        expect(await root.readFile('/tmp/asked')).toBe('policy other\n');
        await send('changeupdateconfig', 'keyvalue=package$--option');
        await root.run([updaterPath, '/from:manual']);
        await log('"--option" is not the name of a package');
        await send('changeupdateconfig', 'keyvalue=enabled$false');
        await root.run([updaterPath, '/from:manual']);
        await log('switched off (enabled=false)');
        expect(await root.readFile('/tmp/asked')).toBe('policy other\n');
    });

    test('the log is cleared and starts again', async () => {
        await root.run([updaterPath, '/sendinstallinfo:true']);
        expect(await send('clearlogfile')).toBe('success');
        expect(await root.list('/var/log/vyrlog')).toEqual([]);
        await root.run([updaterPath, '/sendinstallinfo:true']);
        expect((await root.readFile(logFile)).trim().split('\n')).toHaveLength(2);
        expect((await root.stat(logFile)).mode & 0o777).toBe(0o666);
    });

    test('a link, pipe or directory in place of the log is not written to', async () => {
        await root.writeFile('/home/user/mine', 'mine');
        await root.writeFile('/var/log/vyrlog/other', 'other');
        for (const trap of [
            'ln -s /home/user/mine',
            'ln -s /tmp/missing',
            'ln /var/log/vyrlog/other',
            'mkfifo',
            'mkdir',
        ]) {
            const laid = await root.run(['bash', '-c', `rm -rf ${logFile} && ${trap} ${logFile}`]);
            expect(laid.status, trap).toBe(0);
            const end = await root.run([updaterPath, '/sendinstallinfo:true']);
            expect(end.status, trap).toBe(1);
            expect(end.stderr, trap).toMatch(/^vyrupdate: cannot write .*vyrupdate\.log: /);
        }
        expect(await root.readFile('/home/user/mine')).toBe('mine');
        expect(await root.readFile('/var/log/vyrlog/other')).toBe('other');
        expect(await root.exists('/tmp/missing')).toBe(false);
    });

    describe('what tmpfiles.d makes for it', () => {
        let admin;

        beforeEach(async () => {
            admin = await SandboxRoot.create({ user: 'root' });
        });

        afterEach(async () => admin.dispose());

        const inScratch = (text) =>
            text.replaceAll('/var/log/vyrlog', '/tmp/logs').replaceAll('/opt/', '/tmp/opt/');
        const tmpfiles = inScratch(packagingFile('office-assistant-updater.tmpfiles'));
        const postrm = inScratch(packagingFile('office-assistant-updater.postrm'));
        const shell = (script) => admin.run(['bash', '-c', script]);
        const create = async () => {
            await admin.writeFile('/tmp/updater.conf', tmpfiles);
            return admin.run(['systemd-tmpfiles', '--create', '/tmp/updater.conf']);
        };
        const links = '/tmp/opt/orvane/vtool';

        test('is a log directory of everybody’s, with a sticky bit', async () => {
            expect((await create()).status).toBe(0);
            expect((await admin.stat('/tmp/logs')).mode & 0o7777).toBe(0o1777);
        });

        test('is not made where a link leads to', async () => {
            await shell('mkdir -m 700 /tmp/other; ln -s other /tmp/logs');
            await create();
            expect((await admin.stat('/tmp/other')).mode & 0o7777).toBe(0o700);
        });

        test('is links to the updater and its settings at their fixed place', async () => {
            await create();
            const program = await shell(`readlink ${links}/vyrupdate ${links}/vyrupdate.cfg`);
            expect(program.stdout.split('\n').slice(0, 2)).toEqual([
                '/usr/lib/office-assistant/updater/vyrupdate',
                '/etc/office-assistant/vyrupdate.cfg',
            ]);
            expect(fs.existsSync(installed.path(program.stdout.split('\n')[0]))).toBe(true);
        });

        test('keeps the updater and the settings of a suite', async () => {
            await shell(`mkdir -p ${links}; echo suite > ${links}/vyrupdate`);
            await create();
            await shell(`set -- remove\n${postrm}`);
            expect(await admin.readFile(`${links}/vyrupdate`)).toBe('suite\n');
            expect(await admin.list(links)).toEqual(['vyrupdate']);
        });

        test('goes with the package, the log on purging only, and no other file goes', async () => {
            await create();
            await shell('touch /tmp/logs/vyrupdate.log');
            await shell(`set -- remove\n${postrm}`);
            expect(await admin.list('/tmp/opt')).toEqual([]);
            expect(await admin.list('/tmp/logs')).toEqual(['vyrupdate.log']);
            await shell(`touch /tmp/logs/other; set -- purge\n${postrm}`);
            expect(await admin.list('/tmp/logs')).toEqual(['other']);
            await shell(`rm /tmp/logs/other; set -- purge\n${postrm}`);
            expect(await admin.exists('/tmp/logs')).toBe(false);
        });
    });
});
