import { setTimeout as pause } from 'node:timers/promises';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand, Session } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const dumpDirectory = '/home/user/.local/share/Orvane/tmp/dump';
const settingsFile = '/home/user/.config/Orvane/Office.conf';
const freshCallback = 'freshcrshpageCallBack';
/** Long enough for a watch to report; the tests that expect a callback confirm that. */
const quiet = 600;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const stateNow = async () => (await runCommand(root, 'getDumpState')).answer.result;
const dump = (name) => root.writeFile(`${dumpDirectory}/${name}`, 'a dump');
const told = (session) => session.events.filter(({ callback }) => callback === freshCallback);

describe('getDumpState', () => {
    test('an empty dump directory gives no feedback, one dump does', async () => {
        await root.makeDirectory(dumpDirectory);
        expect(await stateNow()).toEqual({ enable: true, feedback: false });
        await dump('vyr_12.dmp');
        expect(await stateNow()).toEqual({ enable: true, feedback: true });
    });

    test.each([
        ['tbl_1.dmp', true],
        ['shw_99xdmp', true],
        ['vyroffice_0.dmp', true],
        ['vyrpdf_7.dmp', true],
        ['vyr_.dmp', false],
        ['VYR_1.dmp', false],
        ['core_1.dmp', false],
        ['vyr_1.dmp.bak', false],
    ])('%s is a dump: %s', async (name, isDump) => {
        await dump(name);
        expect((await stateNow()).feedback).toBe(isDump);
    });

    test('a newer file that is not a dump is skipped', async () => {
        await dump('vyr_1.dmp');
        await dump('newer.txt');
        expect((await stateNow()).feedback).toBe(true);
    });

    test('an old dump counts too', async () => {
        await dump('vyr_1.dmp');
        await root.run(['touch', '-d', '1999-01-01', `${dumpDirectory}/vyr_1.dmp`]);
        expect((await stateNow()).feedback).toBe(true);
    });

    test('without SaveDump stored dumps are kept', async () => {
        await root.writeFile(settingsFile, '[6.0]\ncommon\\CrashDump\\Other=1\n');
        expect((await stateNow()).enable).toBe(true);
    });

    test('the stored settings of the suite are read', async () => {
        await root.writeFile(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
        expect((await stateNow()).enable).toBe(false);
    });

    test('a dump that this user may not read does not count', async () => {
        await dump('vyr_1.dmp');
        await root.run(['chmod', '000', `${dumpDirectory}/vyr_1.dmp`]);
        expect((await stateNow()).feedback).toBe(false);
    });

    test('a dump directory that is a file or unreadable has no dumps', async () => {
        await root.writeFile(dumpDirectory, 'in the way');
        expect((await stateNow()).feedback).toBe(false);
        await root.remove(dumpDirectory);
        await dump('vyr_1.dmp');
        await root.run(['chmod', '000', dumpDirectory]);
        expect((await stateNow()).feedback).toBe(false);
        await root.run(['chmod', '700', dumpDirectory]);
    });
});

describe('startDump and stopDump', () => {
    test('make the directory, store the switch and leave the rest of the settings', async () => {
        await root.writeFile(settingsFile, '[6.0]\ncommon\\kept=yes\n\n[other]\nkept=too\n');
        expect((await runCommand(root, 'startDump')).answer.result).toBe('success');
        expect((await root.stat(dumpDirectory)).isDirectory()).toBe(true);
        expect(await root.readFile(settingsFile)).toContain('common\\CrashDump\\SaveDump=true\n');
        expect((await runCommand(root, 'stopDump')).answer.result).toBe('success');
        const settings = await root.readFile(settingsFile);
        expect(settings).toContain('common\\CrashDump\\SaveDump=false\n');
        expect(settings).toContain('common\\kept=yes\n');
        expect(settings).toContain('[other]\nkept=too\n');
    });

    test('startDump then stopDump leaves the directory unwatched', async () => {
        const session = Session.start(root);
        await session.send({ command: 'startDump' });
        await session.send({ command: 'stopDump' });
        await dump('vyr_1.dmp');
        await session.wait(quiet);
        expect(told(session)).toEqual([]);
        await session.close();
    });

    test('succeed where neither directory nor settings can be written', async () => {
        await root.makeDirectory('/home/user/.config');
        await root.makeDirectory('/home/user/.local/share/Orvane');
        await root.run(['chmod', '500', '/home/user/.config', '/home/user/.local/share/Orvane']);
        for (const command of ['startDump', 'stopDump', 'cleardumpdir']) {
            expect((await runCommand(root, command)).answer.result).toBe('success');
        }
        expect(await stateNow()).toEqual({ enable: true, feedback: false });
        await root.run(['chmod', '700', '/home/user/.config', '/home/user/.local/share/Orvane']);
    });

    test('on a full disk keep all settings', async () => {
        root.smallDisk('/home/user/.config', 64 * 1024);
        const end = await root.run([
            'bash',
            '-c',
            `
            mkdir ~/.config/Orvane
            printf '[other]\\nkept=yes\\n' > ~/.config/Orvane/Office.conf
            head -c 1000000 /dev/zero > ~/.config/filling 2> /dev/null
            /suite/office/assistantctl startDump
            cat ~/.config/Orvane/Office.conf`,
        ]);
        expect(end.stdout).toContain('"result":"success"');
        expect(end.stdout).toContain('[other]\nkept=yes\n');
    });
});

describe('cleardumpdir', () => {
    test('removes files of any name and leaves subdirectories', async () => {
        await dump('vyr_1.dmp');
        await dump('readme.txt');
        await dump('sub/vyr_2.dmp');
        expect((await runCommand(root, 'cleardumpdir')).answer.result).toBe('success');
        expect(await root.list(dumpDirectory)).toEqual(['sub']);
        expect(await root.list(`${dumpDirectory}/sub`)).toEqual(['vyr_2.dmp']);
    });

    test('succeeds without a dump directory', async () => {
        expect((await runCommand(root, 'cleardumpdir')).answer.result).toBe('success');
        expect(await root.exists(dumpDirectory)).toBe(false);
    });

    test('goes on after a file that cannot be removed', async () => {
        await dump('vyr_1.dmp');
        await root.run(['chmod', '500', dumpDirectory]);
        expect((await runCommand(root, 'cleardumpdir')).answer.result).toBe('success');
        expect(await root.list(dumpDirectory)).toEqual(['vyr_1.dmp']);
        await root.run(['chmod', '700', dumpDirectory]);
    });
});

describe('the watch', () => {
    test('reports a dump that another process writes to every page', async () => {
        const session = Session.start(root);
        await session.send({ command: 'getDumpState', page: 'child' });
        await session.send({ command: 'startDump' });
        await root.run(['bash', '-c', `echo dump > ${dumpDirectory}/shw_99.dmp`]);
        const calls = [
            await session.callback(freshCallback),
            await session.callback(freshCallback),
        ];
        expect(calls).toEqual(
            ['main', 'child'].map((page) => ({
                type: 'callback',
                page,
                callback: freshCallback,
                result: 'success',
            })),
        );
        await session.close();
    });

    test('starts with the crash view while dumps are kept, and ends with it', async () => {
        const session = Session.start(root);
        await session.send({ command: 'router', args: { page: 'crash.html', type: 'crash' } });
        await dump('vyr_1.dmp');
        await session.callback(freshCallback);
        await session.send({ command: 'closechildwindow', args: { type: 'crash' } });
        // May have been under way when the watch ended.
        await session.wait(0);
        const before = told(session).length;
        await dump('vyr_2.dmp');
        await session.wait(quiet);
        expect(told(session)).toHaveLength(before);
        await session.close();
    });

    test('does not start with the crash view while dumps are not kept', async () => {
        await root.writeFile(settingsFile, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
        const session = Session.start(root);
        await session.send({ command: 'router', args: { page: 'crash.html', type: 'crash' } });
        expect(await root.exists(dumpDirectory)).toBe(false);
        await dump('vyr_1.dmp');
        await session.wait(quiet);
        expect(told(session)).toEqual([]);
        await session.close();
    });

    test('reports a deletion while another dump remains, but not the last one', async () => {
        await dump('vyr_1.dmp');
        await dump('vyr_2.dmp');
        const session = Session.start(root);
        await session.send({ command: 'startDump' });
        await root.remove(`${dumpDirectory}/vyr_1.dmp`);
        await session.callback(freshCallback);
        await session.wait(quiet);
        const before = told(session).length;
        await root.remove(`${dumpDirectory}/vyr_2.dmp`);
        await session.wait(quiet);
        expect(told(session)).toHaveLength(before);
        await session.close();
    });

    test('survives the removal of its directory, and startDump resumes it', async () => {
        const session = Session.start(root);
        await session.send({ command: 'startDump' });
        await root.remove(dumpDirectory);
        await session.send({ command: 'startDump' });
        await dump('vyr_1.dmp');
        await session.callback(freshCallback);
        await session.close();
    });
});

test('a hundred thousand dumps are shown, watched and cleared', async () => {
    await root.makeDirectory(dumpDirectory);
    const made = await root.run(
        ['bash', '-c', `cd ${dumpDirectory} && seq 1 100000 | sed 's/.*/vyr_&.dmp/' | xargs touch`],
        { timeoutMs: 120_000 },
    );
    expect(made.status).toBe(0);
    const session = Session.start(root);
    expect((await session.send({ command: 'getDumpState' })).result.feedback).toBe(true);
    await session.send({ command: 'startDump' });
    for (let number = 0; number < 20; ++number) {
        await dump(`tbl_${number}.dmp`);
        await pause(5);
    }
    await session.callback(freshCallback);
    expect((await session.send({ command: 'cleardumpdir' })).result).toBe('success');
    expect(await root.list(dumpDirectory)).toEqual([]);
    expect((await session.close()).status).toBe(0);
});
