import fs from 'node:fs';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { runScript } from './scriptrunner.mjs';

const installed = '/opt/orvane/my office';
const desktop = '/home/user/Desktop';
const integrated = 'vyr-office-tessaly.desktop';
const entries = (...names) => names.map((name) => `vyr-office-${name}.desktop`);
const separate = entries('fixed', 'board', 'chart', 'pdf', 'tbl', 'shw', 'vyr', 'docket');
const removed = entries('vyr', 'shw', 'tbl', 'fixed', 'chart', 'board', 'pdf', 'docket', 'tessaly');

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await root.makeDirectory(desktop);
});

afterEach(async () => root.dispose());

const recover = (mode, path = installed) => runScript(root, 'recovericon.sh', [mode, path]);

async function install(names = [...separate, integrated]) {
    await root.makeDirectory(`${installed}/desktops`);
    for (const name of names) {
        await root.writeFile(`${installed}/desktops/${name}`, name, { mode: 0o644 });
    }
}

test('mode other restores the eight separate shortcuts', async () => {
    await install();
    expect(await recover('other')).toMatchObject({ status: 0, stdout: '', stderr: '' });
    expect(await root.list(desktop)).toEqual([...separate].sort());
    expect(await root.readFile(`${desktop}/vyr-office-vyr.desktop`)).toBe('vyr-office-vyr.desktop');
});

test('mode fusion restores the integrated one alone', async () => {
    await install();
    expect((await recover('fusion')).status).toBe(0);
    expect(await root.list(desktop)).toEqual([integrated]);
});

test('any other word is like other', async () => {
    await install();
    await recover('Fusion');
    expect(await root.list(desktop)).toEqual([...separate].sort());
});

test('shortcuts are made executable and given to the user', async () => {
    await install();
    await root.recordingFake('chown');
    await recover('other');
    expect((await root.stat(`${desktop}/vyr-office-vyr.desktop`)).mode & 0o777).toBe(0o755);
    expect(await root.callsOf('chown')).toEqual(
        separate.map((name) => ['user', `${desktop}/${name}`]),
    );
});

test('the nine known shortcuts without a source are removed, in their order, and nothing else', async () => {
    await install([]);
    await root.fake('rm', '#!/bin/bash\necho "${@: -1}" >> /fakecalls/rm\nexec /usr/bin/rm "$@"\n');
    for (const name of [...removed, 'vyr-office-mine.desktop', 'note.txt']) {
        await root.writeFile(`${desktop}/${name}`, 'old');
    }
    await recover('fusion');
    expect(await root.list(desktop)).toEqual(['note.txt', 'vyr-office-mine.desktop']);
    expect(await root.readFile('/fakecalls/rm')).toBe(
        removed.map((name) => `${desktop}/${name}\n`).join(''),
    );
});

test('a missing source is skipped without a word', async () => {
    await install(['vyr-office-vyr.desktop']);
    expect(await recover('other')).toMatchObject({ status: 0, stderr: '' });
    expect(await root.list(desktop)).toEqual(['vyr-office-vyr.desktop']);
});

test.each(['fusion', 'other'])('without desktops, mode %s removes nothing', async (mode) => {
    await root.makeDirectory(installed);
    await root.writeFile(`${desktop}/vyr-office-vyr.desktop`, 'old');
    expect((await recover(mode)).status).toBe(0);
    expect(await root.list(desktop)).toEqual(['vyr-office-vyr.desktop']);
});

test.each([[['', installed]], [['   ', installed]], [[]]])(
    'an empty mode says "exit 1" and ends with it: %j',
    async (args) => {
        await install();
        await root.writeFile(`${desktop}/${integrated}`, 'old');
        const end = await runScript(root, 'recovericon.sh', args);
        expect(end).toMatchObject({ status: 1, stdout: 'exit 1\n' });
        expect(await root.list(desktop)).toEqual([integrated]);
    },
);

test('the desktop folder is created even if the mode is empty', async () => {
    await root.remove(desktop);
    await recover('');
    expect(await root.list('/home/user')).toEqual(['桌面']);
});

test('the desktop of user-dirs.dirs is used, however deep', async () => {
    await install();
    await root.writeFile(
        '/home/user/.config/user-dirs.dirs',
        'XDG_DESKTOP_DIR="$HOME/My Data/Desk"\n',
    );
    await recover('fusion');
    expect(await root.list('/home/user/My Data/Desk')).toEqual([integrated]);
    expect(await root.list(desktop)).toEqual([]);
});

test('a shortcut that cannot be overwritten is replaced', async () => {
    await install();
    await root.fake('rm', '#!/bin/bash\n');
    await root.writeFile(`${desktop}/${integrated}`, 'old', { mode: 0o444 });
    await recover('fusion');
    expect(await root.readFile(`${desktop}/${integrated}`)).toBe(integrated);
});

test('a shortcut that cannot be copied is skipped, and the status is still 0', async () => {
    await install();
    await root.fake('cp', '#!/bin/bash\nexit 1\n');
    await root.recordingFake('chmod');
    await root.recordingFake('chown');
    expect((await recover('other')).status).toBe(0);
    expect(await root.callsOf('chmod')).toEqual([]);
    expect(await root.callsOf('chown')).toEqual([]);
});

test('root’s desktop is below /root', async () => {
    await root.dispose();
    root = await SandboxRoot.create({ user: 'root' });
    await install();
    await recover('fusion');
    expect(await root.list('/root/桌面')).toEqual([integrated]);
});

test('the separate shortcuts are copied in their order', async () => {
    await install();
    await root.recordingFake('cp');
    await root.recordingFake('chmod');
    await root.recordingFake('chown');
    await recover('other');
    const sources = (await root.callsOf('cp')).map((call) => call.at(-2));
    expect(sources).toEqual(separate.map((name) => `${installed}/desktops/${name}`));
});

test('on a full disk there is no empty shortcut', async () => {
    await install();
    root.smallDisk(desktop, 16 * 1024);
    const end = await root.run([
        'bash',
        '-c',
        `head -c 100000 /dev/zero > ${desktop}/filling 2> /dev/null
         bash /scripts/recovericon.sh other '${installed}' 2> /dev/null
         ls -A ${desktop}`,
    ]);
    expect(end.stdout).toBe('filling\n');
});

test('a shortcut that cannot be copied keeps its earlier content', async () => {
    await install();
    await root.writeFile(`${desktop}/${integrated}`, 'old');
    await root.fake('cp', '#!/bin/bash\necho half > "${@: -1}"\nexit 1\n');
    await recover('fusion');
    expect(await root.list(desktop)).toEqual([integrated]);
    expect(await root.readFile(`${desktop}/${integrated}`)).toBe('old');
});

test('what a killed run left is removed, whatever its mode was', async () => {
    await install();
    await root.writeFile(`${desktop}/.${integrated}.part`, 'half');
    await recover('other');
    expect(await root.list(desktop)).toEqual([...separate].sort());
});

test('in a folder that cannot be written the shortcuts that are there are repaired', async () => {
    await install();
    await root.writeFile(`${desktop}/vyr-office-vyr.desktop`, 'old');
    fs.chmodSync(root.hostPath(desktop), 0o555);
    expect((await recover('other')).status).toBe(0);
    expect(await root.list(desktop)).toEqual(['vyr-office-vyr.desktop']);
    expect(await root.readFile(`${desktop}/vyr-office-vyr.desktop`)).toBe('vyr-office-vyr.desktop');
    expect((await root.stat(`${desktop}/vyr-office-vyr.desktop`)).mode & 0o777).toBe(0o755);
});

test('two runs at once leave one mode’s shortcuts', async () => {
    await install();
    const runs = ['other', 'fusion'].map((mode) => `recovericon.sh ${mode} '${installed}' &`);
    await root.run(['bash', '-c', `cd /scripts; bash ${runs.join(' bash ')} wait`]);
    const left = await root.list(desktop);
    expect([[integrated], [...separate].sort()]).toContainEqual(left);
});
