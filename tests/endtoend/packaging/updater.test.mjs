import fs from 'node:fs';
import path from 'node:path';
import { afterAll, afterEach, beforeAll, beforeEach, describe, expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { canBuildPackage, DebianPackage, installPackage } from './debianpackage.mjs';

const configFile = '/opt/orvane/vtool/vyrupdate.cfg';
const updaterPath = '/opt/orvane/vtool/vyrupdate';
const logFile = '/var/log/vyrlog/vyrupdate.log';

/** What apt-cache prints of a package. */
const policy = (installed, candidate) => `#!/bin/bash
printf '%s\\n' "$*" >> /tmp/asked
printf 'office-assistant:\\n  Installed: %s\\n  Candidate: %s\\n' '${installed}' '${candidate}'
`;

describe.runIf(canBuildPackage)('the Debian package', () => {
    let debianPackage;
    let root;

    beforeAll(async () => {
        debianPackage = await DebianPackage.build();
    }, 300_000);

    afterAll(() => debianPackage?.dispose());

    beforeEach(async () => {
        root = await SandboxRoot.create();
        await installPackage(root, debianPackage);
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

    test('has the updater at its place, and nothing that others may write', async () => {
        const contents = await debianPackage.contents();
        const outside = contents.filter(
            ({ name, mode }) => !mode.startsWith('d') && !name.startsWith('/usr/'),
        );
        expect(outside.map(({ mode, name }) => `${mode} ${name}`).sort()).toEqual([
            '-rw-r--r-- /opt/orvane/vtool/vyrupdate.cfg',
            '-rwxr-xr-x /opt/orvane/vtool/vyrupdate',
        ]);
        for (const { mode, owner, name } of contents) {
            expect(owner, name).toBe('root/root');
            if (!mode.startsWith('l')) expect(mode, name).toMatch(/^[-d]rw[-x]r-[-x]r-[-x]$/);
        }
        expect(fs.readFileSync(path.join(debianPackage.control, 'conffiles'), 'utf8')).toBe(
            `${configFile}\n`,
        );
        expect(fs.existsSync(path.join(suiteDirectory, 'office/vyrupdate'))).toBe(false);
    });

    test('its shortcuts name the place of its programs', () => {
        const directory = path.join(debianPackage.tree, 'usr/lib/office-assistant/desktops');
        const entry = fs.readFileSync(path.join(directory, 'vyr-office-vyr.desktop'), 'utf8');
        expect(entry).toContain('Exec="/usr/lib/office-assistant/office/opencomponent" vyr %F\n');
        for (const [, place] of entry.matchAll(/^(?:TryExec|Icon)=(.*)$/gm)) {
            expect(fs.existsSync(path.join(debianPackage.tree, place)), place).toBe(true);
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
        await log('"--option" is no name of a package');
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

    describe('its control scripts', () => {
        const logDirectory = '/var/log/vyrlog';
        let admin;

        beforeEach(async () => {
            admin = await SandboxRoot.create({ user: 'root' });
            await installPackage(admin, debianPackage);
        });

        afterEach(async () => admin.dispose());

        /** Runs a control script where the log directory can be created and removed. */
        const control = (script, before, after) =>
            admin.run([
                'bash',
                '-c',
                `
            sed 's#/var/log/vyrlog#/tmp/logs#' /tmp/control/${script} > /tmp/script
            ${before}
            sh /tmp/script ${after}`,
            ]);
        const logs = async () => ((await admin.stat('/tmp/logs')).mode & 0o7777).toString(8);

        test('make the log directory everybody’s, with a sticky bit', async () => {
            expect(fs.readFileSync(path.join(debianPackage.control, 'postinst'), 'utf8')).toContain(
                logDirectory,
            );
            expect(await control('postinst', 'umask 077', 'configure')).toMatchObject({
                status: 0,
                stderr: '',
            });
            expect(await logs()).toBe('1777');
        });

        test('leave a directory that is there and never follow a link', async () => {
            await control('postinst', 'mkdir -m 755 /tmp/logs', 'configure');
            expect(await logs()).toBe('755');
            const end = await control(
                'postinst',
                'rmdir /tmp/logs; mkdir -m 700 /tmp/other; ln -s /tmp/other /tmp/logs',
                'configure',
            );
            expect(end.status).toBe(0);
            expect(end.stderr).toContain('/tmp/logs is no directory');
            expect((await admin.stat('/tmp/other')).mode & 0o7777).toBe(0o700);
        });

        test('remove the log and its directory on purging only, and no other file', async () => {
            await control('postrm', 'mkdir /tmp/logs; touch /tmp/logs/vyrupdate.log', 'remove');
            expect(await admin.list('/tmp/logs')).toEqual(['vyrupdate.log']);
            await control('postrm', 'touch /tmp/logs/other', 'purge');
            expect(await admin.list('/tmp/logs')).toEqual(['other']);
            await control('postrm', 'rm /tmp/logs/other', 'purge');
            expect(await admin.exists('/tmp/logs')).toBe(false);
        });
    });
});
