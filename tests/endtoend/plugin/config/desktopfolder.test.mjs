import { afterEach, describe, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { lines, runScript } from './scriptrunner.mjs';

const shortcut = 'vyr-office-vyr.desktop';

let root;

afterEach(async () => root.dispose());

async function makeRoot(user = 'user') {
    root = await SandboxRoot.create({ user });
}

const desktopPath = async () => (await runScript(root, 'getdesktoppath.sh')).stdout;
const shortcuts = async () => lines((await runScript(root, 'getdesktopfile.sh')).stdout).sort();
const userDirectories = (text) => root.writeFile(`${root.home}/.config/user-dirs.dirs`, text);

describe.each(['user', 'root'])('the desktop folder of %s', (user) => {
    test('is made in Chinese where there is none', async () => {
        await makeRoot(user);
        expect(await desktopPath()).toBe(`${root.home}/桌面\n`);
        expect(await root.list(root.home)).toEqual(['桌面']);
    });

    test('is Desktop where that exists', async () => {
        await makeRoot(user);
        await root.makeDirectory(`${root.home}/Desktop`);
        expect(await desktopPath()).toBe(`${root.home}/Desktop\n`);
        expect(await root.list(root.home)).toEqual(['Desktop']);
    });

    test('is the Chinese one where both exist', async () => {
        await makeRoot(user);
        await root.makeDirectory(`${root.home}/Desktop`);
        await root.makeDirectory(`${root.home}/桌面`);
        expect(await desktopPath()).toBe(`${root.home}/桌面\n`);
    });

    test('is the one of user-dirs.dirs before all, made when missing', async () => {
        await makeRoot(user);
        await root.makeDirectory(`${root.home}/桌面`);
        await userDirectories('XDG_DESKTOP_DIR="$HOME/Schreib tisch"\n');
        expect(await desktopPath()).toBe(`${root.home}/Schreib tisch\n`);
        expect(await root.exists(`${root.home}/Schreib tisch`)).toBe(true);
    });

    test('its shortcuts are listed by name', async () => {
        await makeRoot(user);
        await root.writeFile(`${root.home}/桌面/${shortcut}`, '');
        await root.writeFile(`${root.home}/桌面/vyr-office-tbl.desktop`, '');
        expect(await shortcuts()).toEqual(['vyr-office-tbl.desktop', shortcut]);
    });
});

test('a file in place of the folder is not reported and not replaced', async () => {
    await makeRoot();
    await root.writeFile('/home/user/桌面', 'text');
    const end = await runScript(root, 'getdesktopfile.sh');
    expect(end.stdout).toBe('');
    expect(await root.readFile('/home/user/桌面')).toBe('text');
});

test('a desktop that user-dirs.dirs puts outside home is looked for below home', async () => {
    await makeRoot();
    await userDirectories('XDG_DESKTOP_DIR="/tmp/desk"\n');
    expect(await desktopPath()).toBe('/home/user//tmp/desk\n');
    expect(await root.exists('/tmp/desk')).toBe(true);
    expect(await root.exists('/home/user/tmp/desk')).toBe(true);
});

test('a desktop that cannot be created causes no error output', async () => {
    await makeRoot();
    await userDirectories('XDG_DESKTOP_DIR="/proc/none/desk"\n');
    expect((await runScript(root, 'getdesktoppath.sh')).stderr).toBe('');
});

test('the listing is empty for an empty folder', async () => {
    await makeRoot();
    expect(await runScript(root, 'getdesktopfile.sh')).toMatchObject({
        status: 0,
        stdout: '',
        stderr: '',
    });
});

test('the listing takes files and links called vyr-office*desktop, at the top only', async () => {
    await makeRoot();
    const desk = '/home/user/Desktop';
    for (const name of [
        'vyr-office-a.desktop',
        'vyr-office desktop',
        'vyr-officedesktop',
        'vyr-office-a.desktop.old',
        'my-vyr-office-a.desktop',
        'VYR-office-a.desktop',
        'sub/vyr-office-b.desktop',
    ]) {
        await root.writeFile(`${desk}/${name}`, '');
    }
    await root.makeDirectory(`${desk}/vyr-office-folder.desktop`);
    await root.run(['ln', '-s', '/nowhere', `${desk}/vyr-office-link.desktop`]);
    expect(await shortcuts()).toEqual([
        'vyr-office desktop',
        'vyr-office-a.desktop',
        'vyr-office-link.desktop',
        'vyr-officedesktop',
    ]);
});

test('a desktop folder that is a link is followed', async () => {
    await makeRoot();
    await root.writeFile(`/home/user/Data/${shortcut}`, '');
    await root.run(['ln', '-s', 'Data', '/home/user/Desktop']);
    expect(await shortcuts()).toEqual([shortcut]);
});

test('a desktop two levels below home gives its own folder’s name', async () => {
    await makeRoot();
    await userDirectories('XDG_DESKTOP_DIR="$HOME/Data/Desk"\n');
    await root.writeFile(`/home/user/Data/Desk/${shortcut}`, '');
    await root.writeFile('/home/user/Data/Desk/vyr-office-tbl.desktop', '');
    expect(await shortcuts()).toEqual(['Desk', 'Desk']);
});

test('root’s listing cuts one column earlier', async () => {
    await makeRoot('root');
    await userDirectories('XDG_DESKTOP_DIR="$HOME/Data/Desk"\n');
    await root.writeFile(`/root/Data/Desk/${shortcut}`, '');
    expect(await shortcuts()).toEqual(['Desk']);
});

test('a desktop that is the home directory itself gives no name', async () => {
    await makeRoot();
    await userDirectories('XDG_DESKTOP_DIR="$HOME/"\n');
    await root.writeFile(`/home/user/${shortcut}`, '');
    expect(await shortcuts()).toEqual(['']);
});

test('the home removed from a path in user-dirs.dirs is the one that USER gives', async () => {
    await makeRoot();
    await root.writeFile(
        '/home/other/.config/user-dirs.dirs',
        'XDG_DESKTOP_DIR="/home/other/Desk"\n',
    );
    await root.writeFile(`/home/other/Desk/${shortcut}`, '');
    const end = await runScript(root, 'getdesktopfile.sh', [], { env: { USER: 'other' } });
    expect(end.stdout).toBe(`${shortcut}\n`);
});

test('the user’s name comes from USER, whatever HOME says', async () => {
    await makeRoot();
    await root.writeFile(`/home/other/Desktop/${shortcut}`, '');
    const end = await runScript(root, 'getdesktopfile.sh', [], { env: { USER: 'other' } });
    expect(end.stdout).toBe(`${shortcut}\n`);
});
