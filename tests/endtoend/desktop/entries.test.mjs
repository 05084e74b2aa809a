import fs from 'node:fs';
import path from 'node:path';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SUITE } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { SAMPLES, typeOf } from '../plugin/config/desktoptools.mjs';
import { suiteEntries } from './suiteentries.mjs';

const NAMES = ['board', 'chart', 'docket', 'fixed', 'pdf', 'shw', 'tbl', 'tessaly', 'vyr'];
const DESKTOP = '/home/user/Desktop';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const valueOf = (entry, key) => entry.match(new RegExp(`^${key}=(.*)$`, 'm'))?.[1];

test('there are nine, which a validator accepts without warnings', async () => {
    expect(Object.keys(suiteEntries())).toEqual(NAMES.map((name) => `vyr-office-${name}.desktop`));
    for (const name of NAMES) {
        const end = await root.run([
            'desktop-file-validate',
            `/suite/desktops/vyr-office-${name}.desktop`,
        ]);
        expect(end).toMatchObject({ status: 0, stdout: '', stderr: '' });
    }
});

test('each has names in both languages, an icon and a program that exist', () => {
    const names = new Set();
    for (const [file, entry] of Object.entries(suiteEntries(SUITE))) {
        expect(valueOf(entry, 'Name'), file).toMatch(/^[A-Z]/);
        expect(valueOf(entry, 'Name\\[zh_CN\\]'), file).toMatch(/\p{Script=Han}|^Docket$/u);
        names.add(valueOf(entry, 'Name'));
        expect(fs.existsSync(valueOf(entry, 'Icon')), file).toBe(true);
        fs.accessSync(valueOf(entry, 'TryExec'), fs.constants.X_OK);
        expect(valueOf(entry, 'Exec')).toBe(
            `"${path.join(SUITE, 'office/opencomponent')}" ${valueOf(entry, 'Exec')
                .split(' ')
                .at(-2)} %F`,
        );
    }
    expect(names.size).toBe(9);
});

test('those of writer, spreadsheets and presentations open the suite’s types', () => {
    const entries = suiteEntries();
    const typesOf = (name) =>
        (valueOf(entries[`vyr-office-${name}.desktop`], 'MimeType') ?? '')
            .split(';')
            .filter(Boolean)
            .sort();
    for (const tag of ['vyr', 'tbl', 'shw'])
        expect(typesOf(tag)).toEqual(
            SAMPLES.filter((sample) => sample.tag === tag)
                .map(({ suffix }) => typeOf(suffix))
                .sort(),
        );
    expect(typesOf('tessaly')).toEqual(SAMPLES.map(({ suffix }) => typeOf(suffix)).sort());
    expect(typesOf('pdf')).toEqual([]);
});

const OPENED = '/tmp/opened';
/** Programs that gio starts end with the sandbox, so this keeps it open until they are done. */
const LAUNCH = `gio launch "$@" && until [ -e ${OPENED} ]; do sleep 0.05; done`;

/** Starts a restored shortcut as the desktop does when it is clicked. */
async function click(name, ...documents) {
    await root.makeDirectory(DESKTOP);
    await runCommand(root, 'fixfouricon');
    const shortcut = `${DESKTOP}/vyr-office-${name}.desktop`;
    await root.writeFile(shortcut, (await root.readFile(shortcut)).replaceAll(SUITE, '/suite'), {
        mode: 0o755,
    });
    return root.run(['bash', '-c', LAUNCH, 'launch', shortcut, ...documents]);
}

test('a shortcut starts the suite’s program with the documents', async () => {
    await root.writeFile(
        '/opt/orvane/office/tbl',
        `#!/bin/bash
printf '%s\\n' "$@" > ${OPENED}.new
mv ${OPENED}.new ${OPENED}
`,
        { mode: 0o755 },
    );
    await root.writeFile('/home/user/my sheet.xlsx', '');
    await click('tbl', '/home/user/my sheet.xlsx');
    expect(await root.readFile(OPENED)).toBe('/home/user/my sheet.xlsx\n');
});

test('without the suite a shortcut says what is missing and what to do', async () => {
    const end = await root.run(['/suite/office/opencomponent', 'vyr', '/home/user/a.docx']);
    expect(end.status).toBe(1);
    expect(end.stderr).toMatch(/program "vyr" is not on this machine/);
    expect(end.stderr).toMatch(/Install the office suite, or open/);
    const chinese = await root.run(['/suite/office/opencomponent', 'vyrpdf'], {
        env: { LANG: 'zh_CN.UTF-8' },
    });
    expect(chinese.stderr).toMatch(/“vyrpdf”不在此计算机上/);
});

test('a program that cannot be started is reported', async () => {
    await root.writeFile('/opt/orvane/office/shw', 'no program', { mode: 0o755 });
    const end = await root.run(['/suite/office/opencomponent', 'shw']);
    expect(end.status).toBe(1);
    expect(end.stderr).toMatch(/cannot start \/opt\/orvane\/office\/shw: Exec format error/);
});

test('a program outside of the suite is refused', async () => {
    for (const args of [[], ['../../bin/sh'], ['bash']]) {
        const end = await root.run(['/suite/office/opencomponent', ...args]);
        expect(end.status).toBe(2);
        expect(end.stderr).toMatch(/^usage: opencomponent vyr\|tbl\|shw\|/);
    }
});
