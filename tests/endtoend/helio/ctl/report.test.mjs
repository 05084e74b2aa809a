import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand, Session } from '../../assistantctl.mjs';
import { isEmulated } from '../../emulated.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';

const sectionNames = ['kernel', 'browser', 'cpu', 'font', 'user', 'env', 'otheroffice'];

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.recordingFake('firefox', { output: 'Mozilla  Firefox 128\n' });
    await root.recordingFake('fc-list', { output: 'Zeta Regular \nAlpha Bold \n' });
    await root.recordingFake('dpkg');
});

afterEach(async () => root.dispose());

const marker = (section, edge) => `************${section}-${edge}***********\r\n`;

/** The sections of a report by name; throws on text outside of them. */
function sectionsOf(report) {
    const sections = {};
    let rest = report;
    for (const name of sectionNames) {
        expect(rest.startsWith(marker(name, 'begin'))).toBe(true);
        const end = rest.indexOf(marker(name, 'end'));
        expect(end).toBeGreaterThan(0);
        sections[name] = rest.slice(marker(name, 'begin').length, end);
        rest = rest.slice(end + marker(name, 'end').length);
    }
    expect(rest).toBe('');
    return sections;
}

test('exportsysinfo saves the seven sections and opens the file', async () => {
    const end = await runCommand(
        root,
        'exportsysinfo',
        {},
        { choose: ['/tmp/report'], trace: true },
    );
    expect(end).toMatchObject({ status: 0, answer: { result: 'success' } });
    const told = end.events.filter(({ type }) => type !== 'started');
    expect(told.slice(0, 2)).toEqual([
        {
            type: 'dialog',
            mode: 'save',
            caption: 'Save File',
            directory: '/home/user',
            name: 'systeminfo',
            filters: [],
            chosen: '/tmp/report',
        },
        { type: 'opened', url: 'file:///tmp/report' },
    ]);
    expect(told.at(-1).type).toBe('answer');

    const sections = sectionsOf(await root.readFile('/tmp/report'));
    const uname = (await root.run(['uname', '-srm'])).stdout.trim().split(' ');
    const machine = isEmulated ? 'aarch64' : uname[2];
    expect(sections.kernel).toBe(`${uname[0]} ${uname[1]}  ${machine}\r\n`);
    expect(sections.browser).toBe('Mozilla Firefox 128\r\n\ufffd\r\n');
    expect(sections.font).toBe('Zeta Regular \r\nAlpha Bold \r\n');
    expect(sections.user).toBe('user\r\n');
    expect(sections.env.split('\r\n')).toContain('HOME=/home/user');
    expect(sections.otheroffice).toBe('');
});

test('the processors are listed, then repeated as they were read', async () => {
    await runCommand(root, 'exportsysinfo', {}, { choose: ['/tmp/report'] });
    const { cpu } = sectionsOf(await root.readFile('/tmp/report'));
    const raw = (await root.run(['bash', '-c', 'grep name /proc/cpuinfo | cut -f2 -d:'])).stdout;
    const found = raw.trimEnd();
    expect(cpu).toBe(`${found.replaceAll('\n', '\r\n')}\r\n${found}\r\n`);
});

test('other suites are listed, the database component left out', async () => {
    const entry = (name, rest = '') => `[Desktop Entry]\nType=Application\nName=${name}\n${rest}`;
    const folder = '/usr/share/applications';
    await root.writeFile(
        `${folder}/libreoffice-writer.desktop`,
        entry('Writer', 'Exec=lowriter %U\n'),
    );
    await root.writeFile(`${folder}/libreoffice-base.desktop`, entry('Base', 'Exec=lobase\n'));
    await root.writeFile(`${folder}/my-yozo-x.desktop`, '[Desktop Entry]\nType=Application\n');
    await root.writeFile(`${folder}/vim.desktop`, entry('Vim', 'Exec=vim\n'));
    await runCommand(root, 'exportsysinfo', {}, { choose: ['/tmp/report'] });
    const { otheroffice } = sectionsOf(await root.readFile('/tmp/report'));
    expect(otheroffice.split('\r\n').sort()).toEqual([
        '',
        'Writer    lowriter %U',
        'my-yozo-x.desktop  ',
    ]);
});

test('a cancelled dialog answers "error" and writes nothing', async () => {
    const end = await runCommand(root, 'exportsysinfo', {}, { trace: true });
    expect(end).toMatchObject({ status: 1, answer: { result: 'error' } });
    expect(end.events.map(({ type }) => type)).toEqual(['dialog', 'answer']);
});

test('a second report of the session is appended without running the tools again', async () => {
    const session = Session.start(root);
    for (let count = 0; count < 2; ++count) {
        await session.send({ command: 'exportsysinfo', choose: ['/tmp/report'] });
    }
    await session.close();
    const report = await root.readFile('/tmp/report');
    expect(report.length % 2).toBe(0);
    const half = report.slice(0, report.length / 2);
    expect(report).toBe(half + half);
    sectionsOf(half);
    expect(await root.callsOf('firefox')).toHaveLength(1);
    expect(await root.callsOf('fc-list')).toHaveLength(1);
});

test('a report into a folder that does not exist is silent, and still "opened"', async () => {
    const end = await runCommand(
        root,
        'exportsysinfo',
        {},
        { choose: ['/tmp/none/report'], trace: true },
    );
    expect(end.answer.result).toBe('success');
    expect(end.events.map(({ type }) => type)).toContain('opened');
});

test('a file that the desktop would run is written but neither opened nor answered', async () => {
    const end = await runCommand(
        root,
        'exportsysinfo',
        {},
        { choose: ['/tmp/report.desktop'], trace: true },
    );
    expect(end.answer).not.toHaveProperty('result');
    expect(end.events.map(({ type }) => type)).not.toContain('opened');
    expect(end.status).toBe(0);
    expect(await root.exists('/tmp/report.desktop')).toBe(true);
});

test('the staged script is gone when the program ends', async () => {
    await runCommand(root, 'exportsysinfo', {}, { choose: ['/tmp/report'] });
    expect(await root.list('/home/user/.local/share/Orvane/tmp/officeassis_script')).toEqual([]);
});

test('without fc-list its section is empty and the rest is there', async () => {
    await root.fake('fc-list', '#!/bin/bash\nexit 1\n');
    await runCommand(root, 'exportsysinfo', {}, { choose: ['/tmp/report'] });
    expect(sectionsOf(await root.readFile('/tmp/report')).font).toBe('');
});
