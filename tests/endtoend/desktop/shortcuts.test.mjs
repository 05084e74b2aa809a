import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { suiteEntries } from './suiteentries.mjs';

const integrated = 'vyr-office-tessaly.desktop';
const separate = [
    'vyr-office-board.desktop',
    'vyr-office-chart.desktop',
    'vyr-office-docket.desktop',
    'vyr-office-fixed.desktop',
    'vyr-office-pdf.desktop',
    'vyr-office-shw.desktop',
    'vyr-office-tbl.desktop',
    'vyr-office-vyr.desktop',
];
const staged = '/home/user/.local/share/Orvane/tmp/officeassis_script';
const desktop = '/home/user/Desktop';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.makeDirectory(desktop);
});

afterEach(async () => root.dispose());

const stateNow = async (options) =>
    (await runCommand(root, 'getdesktopiconfile', {}, options)).answer.result;

function setMode(mode) {
    return root.writeFile(
        '/home/user/.config/Orvane/Office.conf',
        `[6.0]\nvyroffice\\Application%20Settings\\AppComponentMode=${mode}\n`,
    );
}

describe('getdesktopiconfile', () => {
    test('without a shortcut the icon is empty', async () => {
        expect(await stateNow()).toEqual({
            icon: '',
            mode: 'helio_independ',
            chartboard: false,
            docket: false,
            fixedcomponent: false,
        });
    });

    test('lists the suite’s shortcuts joined with a bar', async () => {
        for (const name of ['vyr-office-vyr.desktop', 'vyr-office-x desktop', 'other.desktop']) {
            await root.writeFile(`${desktop}/${name}`, '');
        }
        expect((await stateNow()).icon.split('|').sort()).toEqual([
            'vyr-office-vyr.desktop',
            'vyr-office-x desktop',
        ]);
    });

    test('a desktop folder deeper below home gives a folder’s name', async () => {
        await root.writeFile(
            '/home/user/.config/user-dirs.dirs',
            'XDG_DESKTOP_DIR="$HOME/deep/desk"\n',
        );
        await root.writeFile('/home/user/deep/desk/vyr-office-vyr.desktop', '');
        expect((await stateNow()).icon).toBe('desk');
    });

    test('the desktop of the user root is listed', async () => {
        const other = await SandboxRoot.create({ suite: true, user: 'root' });
        try {
            await other.writeFile('/root/Desktop/vyr-office-tbl.desktop', '');
            const end = await runCommand(other, 'getdesktopiconfile');
            expect(end.answer.result.icon).toBe('vyr-office-tbl.desktop');
        } finally {
            await other.dispose();
        }
    });

    test.each([
        ['', 'helio_independ'],
        ['helio_fushion', 'helio_fushion'],
        ['helio_independ', 'helio_independ'],
        ['any word', 'any word'],
    ])('the stored mode "%s" is told as %s', async (stored, told) => {
        await setMode(stored);
        expect((await stateNow()).mode).toBe(told);
    });

    test('components are those of the host’s configuration', async () => {
        await root.writeFile('/suite/office/helio.ini', 'components=ChartBoard,DocketComponent\n');
        expect(await stateNow()).toMatchObject({
            chartboard: true,
            docket: true,
            fixedcomponent: false,
        });
        expect(await stateNow({ env: { HELIO_COMPONENTS: 'FixedComponent' } })).toMatchObject({
            chartboard: false,
            docket: false,
            fixedcomponent: true,
        });
    });

    test('without a staging directory the icon is empty', async () => {
        expect((await stateNow({ env: { HELIO_SUITE_HOME: '/proc/none' } })).icon).toBe('');
    });

    test('fifty megabytes of shortcuts are passed on', async () => {
        await root.writeFile(
            `${staged}/getdesktopfile.sh`,
            '#!/bin/bash\nyes vyr-office-vyr.desktop | head -c 52428800\n',
        );
        const { icon } = await stateNow();
        expect(icon.length).toBeGreaterThan(52_000_000);
        expect(icon.startsWith('vyr-office-vyr.desktop|vyr-office-vyr.desktop|')).toBe(true);
    });
});

describe('restoring', () => {
    test('fixfouricon puts eight shortcuts back', async () => {
        await root.writeFile(`${desktop}/${integrated}`, 'old');
        await root.writeFile(`${desktop}/mine.desktop`, 'mine');
        const end = await runCommand(root, 'fixfouricon', {}, { trace: true });
        expect(end).toMatchObject({ status: 0, answer: { result: 'success' } });
        expect(end.events[0]).toEqual({
            type: 'started',
            program: `${staged}/recovericon.sh`,
            arguments: ['other', '/suite/office/..'],
            workingDirectory: '',
            detached: true,
        });
        expect(await root.list(desktop)).toEqual(['mine.desktop', ...separate]);
        expect((await root.stat(`${desktop}/${separate[0]}`)).mode & 0o111).toBe(0o111);
        for (const name of separate) {
            expect(await root.readFile(`${desktop}/${name}`)).toBe(
                suiteEntries(suiteDirectory)[name],
            );
        }
    });

    test('fixoneicon puts the integrated shortcut back', async () => {
        await root.writeFile(`${desktop}/${separate[7]}`, 'old');
        const end = await runCommand(root, 'fixoneicon', {}, { trace: true });
        expect(end.events[0].arguments).toEqual(['fusion', '/suite/office/..']);
        expect(await root.list(desktop)).toEqual([integrated]);
    });

    test('without a folder of desktop entries nothing is removed or copied', async () => {
        await root.remove('/suite/desktops');
        await root.writeFile(`${desktop}/${separate[7]}`, 'old');
        for (const command of ['fixoneicon', 'fixfouricon']) {
            expect((await runCommand(root, command)).answer.result).toBe('success');
        }
        expect(await root.list(desktop)).toEqual([separate[7]]);
        expect(await root.readFile(`${desktop}/${separate[7]}`)).toBe('old');
    });

    test('answers success where the script cannot be staged', async () => {
        for (const command of ['fixoneicon', 'fixfouricon']) {
            const end = await runCommand(
                root,
                command,
                {},
                { trace: true, env: { HELIO_SUITE_HOME: '/proc/none' } },
            );
            expect(end.events).toEqual([
                { type: 'answer', id: null, page: 'main', command, result: 'success' },
            ]);
        }
        expect(await root.list(desktop)).toEqual([]);
    });

    test('on a full disk leaves the program alive', async () => {
        root.smallDisk(desktop, 16 * 1024);
        const end = await root.run([
            'bash',
            '-c',
            `
            head -c 1000000 /dev/zero > ~/Desktop/filling 2> /dev/null
            /suite/office/assistantctl fixfouricon && /suite/office/assistantctl getdesktopiconfile`,
        ]);
        expect(end.status).toBe(0);
        expect(end.stdout).toContain('"command":"getdesktopiconfile"');
    });
});
