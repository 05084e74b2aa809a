import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { openDialog, runCommand, Session } from '../../assistantctl.mjs';
import { beside } from '../../beside.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';

const office = '/suite/office';
const screenGrab = `${office}/addons/vyrassistanttool/independScreenshot/libkscreengrablinux.so`;

let root;
let session;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    session = Session.start(root);
});

afterEach(async () => root.dispose());

describe('programs', () => {
    test.each([
        ['stoppreload', 'quickstartoffice', ['stop', 'false']],
        ['restartpreload', 'quickstartoffice', ['restart', 'false']],
        ['recordscreen', `${office}/addons/vyrassistanttool/screencap/screencap`, []],
        ['contentreplace', `${office}/eptools`, ['-replacefile']],
        ['apilog', `${office}/eptools`, ['-apilog']],
    ])('%s starts %s detached, whether or not it exists', async (command, program, args) => {
        expect((await session.send({ command })).result).toBe('success');
        expect(session.traced('started')).toEqual([
            { type: 'started', program, arguments: args, workingDirectory: '', detached: true },
        ]);
    });

    test('a launcher in PATH really runs', async () => {
        await root.recordingFake('quickstartoffice');
        await session.send({ command: 'restartpreload' });
        const calls = () => root.callsOf('quickstartoffice');
        await waitFor(async () => (await calls()).length > 0, { what: 'the launcher’s start' });
        expect(await calls()).toEqual([['restart', 'false']]);
    });
});

describe('screenshots', () => {
    const taken = (events) => events.map(({ type, signal }) => signal ?? type);

    test('minimises, restores and answers without the screen-grab library', async () => {
        await session.close();
        await root.remove(screenGrab);
        session = Session.start(root);
        const begin = Date.now();
        const answer = await session.send({ command: 'screenshots' });
        expect(Date.now() - begin).toBeGreaterThanOrEqual(290);
        expect(answer.result).toBe('success');
        expect(taken(session.events)).toEqual(['sigShowMinimized', 'sigShowNormal', 'answer']);
        expect((await session.close()).stderr).toBe('');
    });

    test('without a display explains why there is no picture', async () => {
        expect((await session.send({ command: 'screenshots' })).result).toBe('success');
        const end = await session.close();
        expect(taken(end.events)).toEqual(['sigShowMinimized', 'sigShowNormal', 'answer']);
        expect(end.stderr).toMatch(
            /no screenshot was taken: there is no display whose screen could be taken/,
        );
        expect(await root.exists('/home/user/Pictures')).toBe(false);
    });

    test('saves the screen of the display in the pictures folder', async () => {
        const withDisplay = await beside(
            root,
            `
mkfifo /tmp/display
Xvfb -displayfd 9 -screen 0 640x480x24 -nolisten tcp -noreset 9> /tmp/display &
read -t 60 number < /tmp/display
export DISPLAY=:$number`,
        );
        const end = await runCommand(withDisplay, 'screenshots');
        expect(end).toMatchObject({ status: 0, stderr: '', answer: { result: 'success' } });
        const [picture, ...others] = await root.list('/home/user/Pictures');
        expect(others).toEqual([]);
        const { stdout } = await root.run(['file', '--brief', `/home/user/Pictures/${picture}`]);
        expect(stdout).toBe('PNG image data, 640 x 480, 8-bit/color RGB, non-interlaced\n');
    });
});

test('copytoclipboard puts the text on the clipboard', async () => {
    const text = 'a "b"\n桌面';
    const answer = await session.send({ command: 'copytoclipboard', args: { verification: text } });
    expect(answer.result).toBe('success');
    expect(session.traced('clipboard')).toEqual([{ type: 'clipboard', text }]);
});

describe('addconfigfile', () => {
    const listed = async () =>
        Object.keys((await session.send({ command: 'stratextractfileinfo' })).result);

    test('adds the picked file to the often used ones', async () => {
        await root.writeFile('/tmp/my.conf', '');
        const answer = await session.send({ command: 'addconfigfile', choose: ['/tmp/my.conf'] });
        expect(answer.result).toBe('success');
        expect(session.traced('dialog')).toEqual([openDialog('/tmp/my.conf')]);
        expect((await listed()).sort()).toEqual(['.config', 'Office.conf', 'Orvane', 'my.conf']);
    });

    test('cancelled answers "error" and changes nothing', async () => {
        expect((await session.send({ command: 'addconfigfile' })).result).toBe('error');
        expect((await listed()).sort()).toEqual(['.config', 'Office.conf', 'Orvane']);
    });
});

describe('getcollectionpage', () => {
    const collect = async (infopage) => {
        await session.send({ command: 'feedbacktovyr', args: { infopage } });
        return (await session.send({ command: 'getcollectionpage' })).result;
    };

    test('is empty before any feedback', async () => {
        expect((await session.send({ command: 'getcollectionpage' })).result).toEqual({ page: '' });
    });

    test.each(['crash', 'Layout', 'print '])('%j has no file', async (page) => {
        expect(await collect(page)).toEqual({ page });
    });

    test.each(['layout', 'print'])('%s has an empty file before one was chosen', async (page) => {
        expect(await collect(page)).toEqual({ page, file: '' });
    });
});
