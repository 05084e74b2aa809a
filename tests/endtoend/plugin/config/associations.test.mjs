import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import {
    ENTRIES,
    fakeDesktop,
    INTEGRATED,
    SAMPLES,
    setAllDefaults,
    setDefault,
    setMode,
    TEMPLATES,
    typeOf,
    writeSamples,
} from './desktoptools.mjs';
import { lines, runScript } from './scriptrunner.mjs';

let root;

afterEach(async () => root.dispose());

async function list(script, options) {
    const end = await runScript(root, script, [TEMPLATES], options);
    expect(end.stderr).toBe('');
    return lines(end.stdout);
}

const types = () => list('getmimeinfo.sh');
const applications = () => list('getopeninfo.sh');

/** The lines of getopeninfo.sh when entryOf(tag) is found for every suffix. */
const applicationLines = (entryOf, flag) =>
    SAMPLES.map(({ tag, suffix }) => `${tag}|${suffix}|${entryOf(tag)}|${flag}`);

/** The entries as the listing prints them: the writer's is misspelt. */
const shownEntry = (tag) => (tag === 'vyr' ? 'vyr-office-vyr.dekstop' : ENTRIES[tag]);

describe.each(['getmimeinfo.sh', 'getopeninfo.sh'])('%s', (script) => {
    test.each([[['/opt/orvane/none']], [[]]])('without a folder ends with 1: %j', async (args) => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        const end = await runScript(root, script, args);
        expect(end).toMatchObject({ status: 1, stdout: 'asso_template not found\n', stderr: '' });
        expect(await root.callsOf('gio')).toEqual([]);
    });

    test('asks gio twice for every sample in order', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await writeSamples(root);
        await list(script);
        expect(await root.callsOf('gio')).toEqual(
            SAMPLES.flatMap(({ suffix }) => [
                ['info', '-a', 'standard::content-type', `${TEMPLATES}/vyr${suffix}`],
                ['mime', typeOf(suffix)],
            ]),
        );
    });

    test('without gio asks the gvfs tools the same', async () => {
        root = await SandboxRoot.create({ hide: ['/usr/bin/gio'] });
        await fakeDesktop(root, ['gio', 'gvfs-info', 'gvfs-mime']);
        await writeSamples(root);
        await list(script);
        expect(await root.callsOf('gio')).toEqual([]);
        expect(await root.callsOf('gvfs-info')).toEqual(
            SAMPLES.map(({ suffix }) => [
                '-a',
                'standard::content-type',
                `${TEMPLATES}/vyr${suffix}`,
            ]),
        );
        expect(await root.callsOf('gvfs-mime')).toEqual(
            SAMPLES.map(({ suffix }) => ['--query', typeOf(suffix)]),
        );
    });

    test('without any tool every line is empty and false', async () => {
        root = await SandboxRoot.create({
            hide: ['/usr/bin/gio', '/usr/bin/gvfs-info', '/usr/bin/gvfs-mime'],
        });
        await writeSamples(root);
        const end = await runScript(root, script, [TEMPLATES]);
        expect(lines(end.stdout)).toEqual(applicationLines(() => '', false));
    });

    test('without samples every line is empty and false', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await root.makeDirectory(TEMPLATES);
        const end = await runScript(root, script, [TEMPLATES]);
        expect(lines(end.stdout)).toEqual(applicationLines(() => '', false));
    });
});

describe('types', () => {
    beforeEach(async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
    });

    test('of the suite are true, all 39 in order', async () => {
        await writeSamples(root);
        expect(await types()).toEqual(
            SAMPLES.map(({ tag, suffix }) => `${tag}|${suffix}|${typeOf(suffix)}|true`),
        );
        expect(SAMPLES).toHaveLength(39);
    });

    test('of others are false', async () => {
        await writeSamples(root, () => 'application/msword');
        expect(new Set((await types()).map((line) => line.split('|').slice(2).join('|')))).toEqual(
            new Set(['application/msword|false']),
        );
    });

    test.each([
        ['application/vyr-office', true],
        ['x-application/vyr-office.x', true],
        ['application/vyr-offic', false],
        ['application/VYR-office', false],
    ])('%s is the suite’s: %s', async (type, flag) => {
        await writeSamples(root, () => type);
        expect((await types())[0]).toBe(`shw|.pptx|${type}|${flag}`);
    });

    test('do not depend on the component mode', async () => {
        await writeSamples(root);
        const before = await types();
        await setMode(root, 'helio_fushion');
        expect(await types()).toEqual(before);
    });
});

describe('applications', () => {
    beforeEach(async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await writeSamples(root);
    });

    test('of the suite are true, the writer’s entry misspelt', async () => {
        await setAllDefaults(root, (tag) => ENTRIES[tag]);
        expect(await applications()).toEqual(applicationLines(shownEntry, true));
    });

    test('count whichever of the suite’s three it is', async () => {
        await setAllDefaults(root, () => ENTRIES.tbl);
        expect(await applications()).toEqual(applicationLines(() => ENTRIES.tbl, true));
    });

    test('integrated count in integrated mode only', async () => {
        await setAllDefaults(root, () => INTEGRATED);
        expect(await applications()).toEqual(applicationLines(() => INTEGRATED, false));
        await setMode(root, 'helio_fushion');
        expect(await applications()).toEqual(applicationLines(() => INTEGRATED, true));
    });

    test('separate do not count in integrated mode', async () => {
        await setAllDefaults(root, (tag) => ENTRIES[tag]);
        await setMode(root, 'helio_fushion');
        expect(await applications()).toEqual(applicationLines(shownEntry, false));
    });

    test.each(['helio_independ', 'helio_fusion', 'helio_fushion ', ''])(
        'mode "%s" is not the integrated one',
        async (mode) => {
            await setMode(root, mode);
            await setAllDefaults(root, (tag) => ENTRIES[tag]);
            expect(await applications()).toEqual(applicationLines(shownEntry, true));
        },
    );

    test('of others repeat the entry of the suffix before, within one list', async () => {
        await setAllDefaults(root, () => 'other.desktop');
        await setDefault(root, '.ppt', ENTRIES.shw);
        await setDefault(root, '.rtf', ENTRIES.vyr);
        const found = await applications();
        expect(found.slice(0, 3)).toEqual([
            'shw|.pptx||false',
            'shw|.ppt|vyr-office-shw.desktop|true',
            'shw|.pptm|vyr-office-shw.desktop|false',
        ]);
        expect(found[13]).toBe('shw|.shdo|vyr-office-shw.desktop|false');
        expect(found[14]).toBe('tbl|.xlsx||false');
        expect(found[26]).toBe('vyr|.docx||false');
        expect(found[38]).toBe('vyr|.rtf|vyr-office-vyr.dekstop|true');
    });

    test('registered but not default are not found', async () => {
        await setAllDefaults(root, () => 'other.desktop');
        expect(await applications()).toEqual(applicationLines(() => '', false));
    });

    test('that appear twice in the answer are used in the fixed order', async () => {
        await setAllDefaults(root, () => `${INTEGRATED};${ENTRIES.tbl};${ENTRIES.shw}`);
        expect(await applications()).toEqual(applicationLines(() => ENTRIES.shw, true));
    });
});

describe('repairasso.sh', () => {
    const repair = (args = [TEMPLATES]) => runScript(root, 'repairasso.sh', args);
    const expectedSets = (entryOf) =>
        SAMPLES.map(({ tag, suffix }) => [typeOf(suffix), entryOf(tag)]);

    test('without a folder prints nothing and ends with 1', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        expect(await repair()).toMatchObject({ status: 1, stdout: '', stderr: '' });
        expect(await root.callsOf('gio')).toEqual([]);
    });

    test.each([
        ['helio_independ', (tag) => ENTRIES[tag]],
        ['helio_fushion', () => INTEGRATED],
    ])('in mode %s sets every default in order', async (mode, entryOf) => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await writeSamples(root);
        await setMode(root, mode);
        expect(await repair()).toMatchObject({ status: 0, stderr: '' });
        const sets = (await root.callsOf('gio')).filter((call) => call[0] === 'mime');
        expect(sets.map((call) => call.slice(1))).toEqual(expectedSets(entryOf));
    });

    test('without gio uses the gvfs tools', async () => {
        root = await SandboxRoot.create({ hide: ['/usr/bin/gio'] });
        await fakeDesktop(root, ['gvfs-info', 'gvfs-mime']);
        await writeSamples(root);
        expect((await repair()).stderr).toBe('');
        expect(await root.callsOf('gvfs-mime')).toEqual(
            expectedSets((tag) => ENTRIES[tag]).map((call) => ['--set', ...call]),
        );
    });

    test('sets nothing for a sample without a type', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await writeSamples(root);
        await root.remove(`${TEMPLATES}/vyr.doc`);
        await repair();
        const sets = (await root.callsOf('gio')).filter((call) => call[0] === 'mime');
        expect(sets).toHaveLength(38);
        expect(sets.map((call) => call[1])).not.toContain('');
    });
});
