import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import {
    entries,
    fakeDesktop,
    installRealDesktop,
    integrated,
    samples,
    setAllDefaults,
    setDefault,
    setMode,
    templates,
    typeOf,
    writeSamples,
} from './desktoptools.mjs';
import { allSuffixes, lines, runScript } from './scriptrunner.mjs';

const suite = '/opt/orvane/office';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await writeSamples(root);
});

afterEach(async () => root.dispose());

describe('assocheck.sh', () => {
    const check = (options) => runScript(root, 'assocheck.sh', [templates], options);
    const sampleLine = (suffix) => `${templates}/vyr${suffix} ${typeOf(suffix)}`;

    beforeEach(async () => {
        await fakeDesktop(root, ['gio']);
        await setAllDefaults(root, (tag) => entries[tag]);
    });

    test('prints every sample with its type when all is well', async () => {
        const end = await check();
        expect(end).toMatchObject({ status: 0, stderr: '' });
        expect(lines(end.stdout)).toEqual(allSuffixes.map(sampleLine));
    });

    test('stops at the first wrong type', async () => {
        await root.writeFile(`${templates}/vyr.pptm`, 'application/zip');
        const end = await check();
        expect(end.status).toBe(1);
        expect(lines(end.stdout)).toEqual([
            sampleLine('.pptx'),
            sampleLine('.ppt'),
            `${templates}/vyr.pptm application/zip`,
            'needasso',
        ]);
    });

    test('stops at the first wrong application', async () => {
        await setDefault(root, '.ppt', 'other.desktop');
        expect(lines((await check()).stdout)).toEqual([
            sampleLine('.pptx'),
            sampleLine('.ppt'),
            'needasso',
        ]);
    });

    test('wants the integrated entry in integrated mode', async () => {
        await setMode(root, 'helio_fushion');
        expect(lines((await check()).stdout)).toEqual([sampleLine('.pptx'), 'needasso']);
        await setAllDefaults(root, () => integrated);
        expect((await check()).status).toBe(0);
    });
});

describe('desktopcheck.sh', () => {
    const check = (options) => runScript(root, 'desktopcheck.sh', [suite], options);

    test('wants the user’s MIME file', async () => {
        await root.recordingFake('update-mime-database');
        expect(await check()).toMatchObject({ status: 1, stdout: 'not found mime xml\n' });
        expect(await root.callsOf('update-mime-database')).toEqual([]);
    });

    test('renews the MIME database, then stops at the first wrong application', async () => {
        await root.recordingFake('update-mime-database');
        await fakeDesktop(root, ['gio']);
        await root.writeFile('/home/user/.local/share/mime/packages/Override.xml', '');
        await setAllDefaults(root, (tag) => entries[tag]);
        expect(await check()).toMatchObject({ status: 0, stdout: '', stderr: '' });
        expect(await root.callsOf('update-mime-database')).toEqual([
            ['/home/user/.local/share/mime'],
        ]);

        await setDefault(root, '.xls', 'other.desktop');
        expect(await check()).toMatchObject({ status: 1, stdout: 'repairdesktop\n' });
        const asked = (await root.callsOf('gio')).at(-1);
        expect(asked).toEqual(['mime', typeOf('.xls')]);
    });

    test('is content with a foreign type as long as the application is right', async () => {
        await root.recordingFake('update-mime-database');
        await fakeDesktop(root, ['gio']);
        await root.writeFile('/home/user/.local/share/mime/packages/Override.xml', '');
        await writeSamples(root, () => 'application/zip');
        await root.writeFile('/tmp/defaults/application/zip', entries.vyr);
        expect((await check()).status).toBe(0);
    });

    test('passes on the real desktop after a repair', async () => {
        await installRealDesktop(root);
        await root.remove('/home/user/.local/share/mime/globs2');
        expect((await check()).stdout).toBe('repairdesktop\n');
        expect(await root.exists('/home/user/.local/share/mime/globs2')).toBe(true);
        await runScript(root, 'repairasso.sh', [templates]);
        expect(await check()).toMatchObject({ status: 0, stdout: '' });
        expect(samples).toHaveLength(39);
    });
});
