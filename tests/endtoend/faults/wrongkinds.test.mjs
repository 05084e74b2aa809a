import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand, Session } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile, installUpdater, logFile, updaterPath } from '../update/updater.mjs';
import { staging, workDirectory } from './faults.mjs';

const settingsFile = '/home/user/.config/Orvane/Office.conf';
const kept = 'kept.txt';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const resultOf = async (command, args, options) =>
    (await runCommand(root, command, args, options)).answer.result;

/** A directory with a file in it that must not be removed. */
async function putDirectory(place) {
    await root.remove(place).catch(() => {});
    await root.writeFile(`${place}/${kept}`, 'mine');
}

const isKept = async (place) => (await root.readFile(`${place}/${kept}`)) === 'mine';

describe('a directory stands in the place of', () => {
    test('the file to save a report, a listing or an archive in', async () => {
        await putDirectory('/home/user/out');
        await putDirectory('/home/user/out.tar.gz');
        const choose = ['/home/user/out'];
        for (const command of ['exportsysinfo', 'exportoftenfileperm']) {
            expect((await runCommand(root, command, {}, { choose })).status).toBeLessThan(2);
        }
        const archive = await runCommand(
            root,
            'archivepackage',
            { archiveDescribe: 'x' },
            { choose },
        );
        expect(archive.status).toBeLessThan(2);
        expect(await isKept('/home/user/out')).toBe(true);
        expect(await isKept('/home/user/out.tar.gz')).toBe(true);
    });

    test('a document to compare, to show or to print', async () => {
        await putDirectory('/home/user/a.docx');
        const path = '/home/user/a.docx';
        const filepath = Buffer.from(path).toString('base64');
        expect(await resultOf('comparefont', { filepath })).toBe('error');
        const session = Session.start(root);
        for (const command of [
            'chooselayouterrorfile',
            'openlaytouerrorfile',
            'openprinterrorfile',
            'choosesamplefile',
        ]) {
            const answer = await session.send({ command, choose: [path] });
            expect(answer.type).toBe('answer');
        }
        expect((await session.close()).status).toBe(0);
        expect(await isKept(path)).toBe(true);
    });

    test('the suite’s settings', async () => {
        await putDirectory(settingsFile);
        expect(await resultOf('getDumpState')).toEqual({ enable: true, feedback: false });
        expect(await resultOf('stopDump')).toBe('success');
        expect(await resultOf('getdesktopiconfile')).toMatchObject({ mode: 'helio_independ' });
        expect(await isKept(settingsFile)).toBe(true);
    });

    test('the updater, its configuration and its log', async () => {
        for (const place of [updaterPath, configFile, logFile]) await putDirectory(place);
        expect(await resultOf('getupdateconfig')).toEqual({});
        expect(await resultOf('changeupdateconfig', { keyvalue: 'a$b' })).toBe('success');
        expect(await resultOf('getlogfile')).toBe('error');
        for (const command of ['testupdate', 'testdailyreport', 'clearlogfile']) {
            expect(await resultOf(command)).toBe('success');
        }
        for (const place of [updaterPath, configFile, logFile]) {
            expect(await isKept(place)).toBe(true);
        }
    });

    test('every staged script', async () => {
        const scripts = (await root.run(['ls', '/scripts'])).stdout
            .split('\n')
            .filter((name) => name.endsWith('.sh'));
        expect(scripts.length).toBeGreaterThan(5);
        for (const script of scripts) await putDirectory(`${staging}/${script}`);
        const session = Session.start(root);
        for (const command of [
            'stratcheckenv',
            'getassomime',
            'getassoopen',
            'fixfouricon',
            'fixoneicon',
            'getdesktopiconfile',
            'fileassorepair',
            'getcpuinfo',
        ]) {
            expect((await session.send({ command })).type).toBe('answer');
        }
        expect((await session.close()).status).toBe(0);
        for (const script of scripts) expect(await isKept(`${staging}/${script}`)).toBe(true);
    });

    test('the check tool and the suite’s component', async () => {
        for (const name of ['vyrEnvCheckTool', 'vyr']) {
            await root.run(['rm', '-f', `/suite/office/${name}`]);
            await putDirectory(`/suite/office/${name}`);
        }
        await root.writeFile('/home/user/a.docx', '');
        const filepath = Buffer.from('/home/user/a.docx').toString('base64');
        expect(await resultOf('comparefont', { filepath })).toBe('error');
        const end = await runCommand(
            root,
            'vyrenvcheck',
            { type: 't', app: 'vyr' },
            { page: 'child', until: 'returnvyrenvcheck' },
        );
        expect(end.events.at(-1).result.value).toBe('');
    });
});

test('garbage in every INI file is answered and left as it is', async () => {
    await installUpdater(root);
    const places = [
        settingsFile,
        configFile,
        '/suite/office/cfgs/setup.cfg',
        `${workDirectory}/vyrEnv.ini`,
        '/usr/share/applications/libreoffice-x.desktop',
    ];
    const garbage = Buffer.from(Array.from({ length: 200_000 }, (_, at) => (at * at * 7919) >> 5));
    for (const place of places) await root.writeFile(place, garbage);
    // The check tool replaces its answer file.
    await root.remove('/suite/office/vyrEnvCheckTool');
    const session = Session.start(root);
    for (const command of [
        'getDumpState',
        'getdesktopiconfile',
        'getupdatesupport',
        'getupdateconfig',
        'stratcheckenv',
        'stratextractfileinfo',
        'getvyrenvcheckedresult',
    ]) {
        expect((await session.send({ command })).type).toBe('answer');
    }
    await session.send({ command: 'vyrenvcheck', page: 'child', args: { type: 't', app: 'vyr' } });
    expect((await session.callback('returnvyrenvcheck')).result.app).toBe('vyr');
    expect((await session.close()).status).toBe(0);
    for (const place of places) {
        expect([place, (await root.readFile(place, null)).equals(garbage)]).toEqual([place, true]);
    }
});
