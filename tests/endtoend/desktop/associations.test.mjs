import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { entries, integrated, samples, setMode, typeOf } from '../plugin/config/desktoptools.mjs';
import { suffixesOfTag } from '../plugin/config/scriptrunner.mjs';
import { installEntries } from './suiteentries.mjs';

const mimeDirectory = '/home/user/.local/share/mime';
const mimePackage = `${mimeDirectory}/packages/Override.xml`;
const tags = ['vyr', 'shw', 'tbl'];

let root;

async function prepare(options = {}) {
    await root?.dispose();
    root = await SandboxRoot.create({ suite: true, ...options });
    await installEntries(root);
    await root.writeFile(
        '/usr/share/applications/other.desktop',
        '[Desktop Entry]\nType=Application\nName=Other\nExec=true %f\n',
    );
}

beforeEach(async () => prepare());

afterEach(async () => {
    await root.dispose();
    root = undefined;
});

const list = async (command, options) =>
    (await runCommand(root, command, {}, options)).answer.result;
const repair = (options) => runCommand(root, 'fileassorepair', {}, options);
/** Updates the mimeDirectory database, as a desktop does when a package is added. */
const updateDatabase = () => root.run(['update-mime-database', mimeDirectory]);
const shown = (tag) => (tag === 'vyr' ? 'vyr-office-vyr.dekstop' : entries[tag]);
/** The answer in which every suffix has value(tag, suffix). */
const everySuffix = (value) =>
    tags.map((tag) =>
        Object.fromEntries(suffixesOfTag[tag].map((suffix) => [suffix, value(tag, suffix)])),
    );

describe('a repair with the real desktop tools', () => {
    test('before it nothing is the suite’s', async () => {
        const types = await list('getassomime');
        expect(types.map((application) => Object.keys(application).length)).toEqual([13, 14, 12]);
        expect(types[0]['.docx']).toBe(
            'application/vnd.openxmlformats-officedocument.wordprocessingml.document|false',
        );
        expect(types[0]['.doc']).toBe('application/msword|false');
        const opened = await list('getassoopen');
        for (const value of [...types, ...opened].flatMap(Object.values)) {
            expect(value).toMatch(/\|false$/);
        }
    });

    test('it installs the types, and with the desktop’s update every suffix has the suite’s', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        const end = await repair({ trace: true });
        expect(end).toMatchObject({ status: 0, answer: { result: 'success' } });
        expect(end.events[0]).toMatchObject({
            type: 'started',
            detached: true,
            arguments: ['/suite/office/asso_template'],
            workingDirectory: '',
        });
        expect((await root.stat(mimePackage)).mode & 0o777).toBe(0o550);
        expect((await updateDatabase()).status).toBe(0);
        expect(await list('getassomime')).toEqual(
            everySuffix((_, suffix) => `${typeOf(suffix)}|true`),
        );
    });

    test('it makes the suite open what the desktop knew before and after its update', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await repair();
        expect((await list('getassoopen'))[0]['.docx']).toBe('vyr-office-vyr.dekstop|true');
        await updateDatabase();
        // The suite's types are subclasses of those just repaired.
        expect((await list('getassoopen'))[0]['.docx']).toBe('vyr-office-vyr.dekstop|true');
    });

    test('after the update, a repair gives every suffix to its own component', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await repair();
        await updateDatabase();
        await repair();
        expect(await list('getassoopen')).toEqual(everySuffix((tag) => `${shown(tag)}|true`));
        const defaults = await root.readFile('/home/user/.config/mimeapps.list');
        for (const { tag, suffix } of samples) {
            expect(defaults).toContain(`${typeOf(suffix)}=${entries[tag]};`);
        }
    });

    test('in integrated mode every suffix goes to the one entry', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await setMode(root, 'helio_fushion');
        await repair();
        await updateDatabase();
        await repair();
        expect(await list('getassoopen')).toEqual(everySuffix(() => `${integrated}|true`));
    });

    test('another program’s claim is taken back', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await repair();
        await updateDatabase();
        await root.run(['gio', 'mime', typeOf('.xlsx'), 'other.desktop']);
        expect((await list('getassoopen'))[2]['.xlsx']).toMatch(/\|false$/);
        await repair();
        expect((await list('getassoopen'))[2]['.xlsx']).toBe('vyr-office-tbl.desktop|true');
    });

    test('files whose content fits better keep their type', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await repair();
        await updateDatabase();
        await root.writeFile('/home/user/graph.dot', 'digraph { a -> b }\n');
        await root.writeFile('/home/user/words.pot', 'msgid ""\nmsgstr ""\n');
        await root.writeFile('/home/user/page.doc', '<html><body>saved as .doc</body></html>');
        const type = async (file) =>
            (await root.run(['gio', 'info', '-a', 'standard::content-type', file])).stdout.match(
                /content-type: (.*)/,
            )[1];
        expect(await type('/home/user/graph.dot')).toBe('text/vnd.graphviz');
        expect(await type('/home/user/words.pot')).toBe('text/x-gettext-translation-template');
        expect(await type('/home/user/page.doc')).toBe(typeOf('.doc'));
    });
});

describe('a repair', () => {
    test('without a folder of user packages installs no types and answers success', async () => {
        expect((await repair()).answer.result).toBe('success');
        expect(await root.exists(mimeDirectory)).toBe(false);
        expect((await list('getassoopen'))[0]['.docx']).toBe('vyr-office-vyr.dekstop|true');
    });

    test('leaves a package that is there', async () => {
        await root.writeFile(mimePackage, 'the user’s own');
        await repair();
        expect(await root.readFile(mimePackage)).toBe('the user’s own');
    });

    test('without a staging directory answers success and starts nothing', async () => {
        const end = await repair({ trace: true, env: { HELIO_SUITE_HOME: '/proc/none' } });
        expect(end.events).toEqual([
            {
                type: 'answer',
                id: null,
                page: 'main',
                command: 'fileassorepair',
                result: 'success',
            },
        ]);
    });

    test('on a full disk answers success', async () => {
        root.smallDisk(mimeDirectory, 16 * 1024);
        const end = await root.run([
            'bash',
            '-c',
            `
            mkdir ${mimeDirectory}/packages
            head -c 1000000 /dev/zero > ${mimeDirectory}/filling 2> /dev/null
            /suite/office/assistantctl fileassorepair; ls ${mimeDirectory}/packages`,
        ]);
        expect(end.stdout).toContain('"result":"success"');
        expect(end.stdout).not.toContain('Override.xml');
    });
});

describe('a listing', () => {
    test('without sample documents answers three empty objects', async () => {
        await root.remove('/suite/office/asso_template');
        expect(await list('getassomime')).toEqual([{}, {}, {}]);
        expect(await list('getassoopen')).toEqual([{}, {}, {}]);
    });

    test('without a staging directory has no result', async () => {
        for (const command of ['getassomime', 'getassoopen']) {
            const end = await runCommand(
                root,
                command,
                {},
                { env: { HELIO_SUITE_HOME: '/proc/none' } },
            );
            expect(end).toMatchObject({
                status: 0,
                events: [{ type: 'answer', id: null, page: 'main', command }],
            });
            expect(end.answer).not.toHaveProperty('result');
        }
    });

    test('without gio and the gvfs tools every type is empty and every flag false', async () => {
        await prepare({ hide: ['/usr/bin/gio', '/usr/bin/gvfs-info', '/usr/bin/gvfs-mime'] });
        const empty = everySuffix(() => '|false');
        expect(await list('getassomime')).toEqual(empty);
        expect(await list('getassoopen')).toEqual(empty);
    });

    test('finds the user’s own types wherever XDG_DATA_HOME points', async () => {
        await root.makeDirectory(`${mimeDirectory}/packages`);
        await repair();
        await updateDatabase();
        const types = await list('getassomime', { env: { XDG_DATA_HOME: '/nowhere' } });
        expect(types[0]['.docx']).toBe(`${typeOf('.docx')}|true`);
    });
});
