import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import {
    entries,
    fakeDesktop,
    integrated,
    samples,
    setAllDefaults,
    setDefault,
    setMode,
    templates,
    typeOf,
    writeSamples,
} from './desktoptools.mjs';
import { lines, runScript } from './scriptrunner.mjs';

let root;

afterEach(async () => root.dispose());

async function list(script, options) {
    const end = await runScript(root, script, [templates], options);
    expect(end.stderr).toBe('');
    return lines(end.stdout);
}

const types = () => list('getmimeinfo.sh');
const applications = () => list('getopeninfo.sh');

/** The lines of getopeninfo.sh when entryOf(tag) is found for every suffix. */
const applicationLines = (entryOf, flag) =>
    samples.map(({ tag, suffix }) => `${tag}|${suffix}|${entryOf(tag)}|${flag}`);

/** The entries as the listing prints them: the writer's is misspelt. */
const shownEntry = (tag) => (tag === 'vyr' ? 'vyr-office-vyr.dekstop' : entries[tag]);

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
            samples.flatMap(({ suffix }) => [
                ['info', '-a', 'standard::content-type', `${templates}/vyr${suffix}`],
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
            samples.map(({ suffix }) => [
                '-a',
                'standard::content-type',
                `${templates}/vyr${suffix}`,
            ]),
        );
        expect(await root.callsOf('gvfs-mime')).toEqual(
            samples.map(({ suffix }) => ['--query', typeOf(suffix)]),
        );
    });

    test('without any tool every line is empty and false', async () => {
        root = await SandboxRoot.create({
            hide: ['/usr/bin/gio', '/usr/bin/gvfs-info', '/usr/bin/gvfs-mime'],
        });
        await writeSamples(root);
        const end = await runScript(root, script, [templates]);
        expect(lines(end.stdout)).toEqual(applicationLines(() => '', false));
    });

    test('without samples every line is empty and false', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await root.makeDirectory(templates);
        const end = await runScript(root, script, [templates]);
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
            samples.map(({ tag, suffix }) => `${tag}|${suffix}|${typeOf(suffix)}|true`),
        );
        expect(samples).toHaveLength(39);
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
        await setAllDefaults(root, (tag) => entries[tag]);
        expect(await applications()).toEqual(applicationLines(shownEntry, true));
    });

    test('count whichever of the suite’s three it is', async () => {
        await setAllDefaults(root, () => entries.tbl);
        expect(await applications()).toEqual(applicationLines(() => entries.tbl, true));
    });

    test('integrated count in integrated mode only', async () => {
        await setAllDefaults(root, () => integrated);
        expect(await applications()).toEqual(applicationLines(() => integrated, false));
        await setMode(root, 'helio_fushion');
        expect(await applications()).toEqual(applicationLines(() => integrated, true));
    });

    test('separate do not count in integrated mode', async () => {
        await setAllDefaults(root, (tag) => entries[tag]);
        await setMode(root, 'helio_fushion');
        expect(await applications()).toEqual(applicationLines(shownEntry, false));
    });

    test.each(['helio_independ', 'helio_fusion', 'helio_fushion ', ''])(
        'mode "%s" is not the integrated one',
        async (mode) => {
            await setMode(root, mode);
            await setAllDefaults(root, (tag) => entries[tag]);
            expect(await applications()).toEqual(applicationLines(shownEntry, true));
        },
    );

    test('of others repeat the entry of the suffix before, within one list', async () => {
        await setAllDefaults(root, () => 'other.desktop');
        await setDefault(root, '.ppt', entries.shw);
        await setDefault(root, '.rtf', entries.vyr);
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
        await setAllDefaults(root, () => `${integrated};${entries.tbl};${entries.shw}`);
        expect(await applications()).toEqual(applicationLines(() => entries.shw, true));
    });
});

describe('repairasso.sh', () => {
    const repair = (args = [templates]) => runScript(root, 'repairasso.sh', args);
    const expectedSets = (entryOf) =>
        samples.map(({ tag, suffix }) => [typeOf(suffix), entryOf(tag)]);

    test('without a folder prints nothing and ends with 1', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        expect(await repair()).toMatchObject({ status: 1, stdout: '', stderr: '' });
        expect(await root.callsOf('gio')).toEqual([]);
    });

    test.each([
        ['helio_independ', (tag) => entries[tag]],
        ['helio_fushion', () => integrated],
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
            expectedSets((tag) => entries[tag]).map((call) => ['--set', ...call]),
        );
    });

    test('sets nothing for a sample without a type', async () => {
        root = await SandboxRoot.create();
        await fakeDesktop(root, ['gio']);
        await writeSamples(root);
        await root.remove(`${templates}/vyr.doc`);
        await repair();
        const sets = (await root.callsOf('gio')).filter((call) => call[0] === 'mime');
        expect(sets).toHaveLength(38);
        expect(sets.map((call) => call[1])).not.toContain('');
    });
});
