import fs from 'node:fs';
import path from 'node:path';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { samples, typeOf } from '../plugin/config/desktoptools.mjs';
import { suiteEntries } from './suiteentries.mjs';

const entryNames = ['board', 'chart', 'docket', 'fixed', 'pdf', 'shw', 'tbl', 'tessaly', 'vyr'];
const desktop = '/home/user/Desktop';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const valueOf = (entry, key) => entry.match(new RegExp(`^${key}=(.*)$`, 'm'))?.[1];

test('there are nine, which a validator accepts without warnings', async () => {
    expect(Object.keys(suiteEntries())).toEqual(
        entryNames.map((name) => `vyr-office-${name}.desktop`),
    );
    for (const name of entryNames) {
        const end = await root.run([
            'desktop-file-validate',
            `/suite/desktops/vyr-office-${name}.desktop`,
        ]);
        expect(end).toMatchObject({ status: 0, stdout: '', stderr: '' });
    }
});

test('each has names in both languages, an icon and a program that exist', () => {
    const names = new Set();
    for (const [file, entry] of Object.entries(suiteEntries(suiteDirectory))) {
        expect(valueOf(entry, 'Name'), file).toMatch(/^[A-Z]/);
        expect(valueOf(entry, 'Name\\[zh_CN\\]'), file).toMatch(/\p{Script=Han}|^Docket$/u);
        names.add(valueOf(entry, 'Name'));
        expect(fs.existsSync(valueOf(entry, 'Icon')), file).toBe(true);
        fs.accessSync(valueOf(entry, 'TryExec'), fs.constants.X_OK);
        expect(valueOf(entry, 'Exec')).toBe(
            `"${path.join(suiteDirectory, 'office/opencomponent')}" ${valueOf(entry, 'Exec')
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
    for (const tag of ['vyr', 'tbl', 'shw']) {
        expect(typesOf(tag)).toEqual(
            samples
                .filter((sample) => sample.tag === tag)
                .map(({ suffix }) => typeOf(suffix))
                .sort(),
        );
    }
    expect(typesOf('tessaly')).toEqual(samples.map(({ suffix }) => typeOf(suffix)).sort());
    expect(typesOf('pdf')).toEqual([]);
});

const opened = '/tmp/opened';
/** Programs that gio starts end with the sandbox, so this keeps it open until they are done. */
const launch = `gio launch "$@" && until [ -e ${opened} ]; do sleep 0.05; done`;

/** Starts a restored shortcut as the desktop does when it is clicked. */
async function click(name, ...documents) {
    await root.makeDirectory(desktop);
    await runCommand(root, 'fixfouricon');
    const shortcut = `${desktop}/vyr-office-${name}.desktop`;
    await root.writeFile(
        shortcut,
        (await root.readFile(shortcut)).replaceAll(suiteDirectory, '/suite'),
        { mode: 0o755 },
    );
    return root.run(['bash', '-c', launch, 'launch', shortcut, ...documents]);
}

test('a shortcut starts the suite’s program with the documents', async () => {
    await root.writeFile(
        '/opt/orvane/office/tbl',
        `#!/bin/bash
printf '%s\\n' "$@" > ${opened}.new
mv ${opened}.new ${opened}
`,
        { mode: 0o755 },
    );
    await root.writeFile('/home/user/my sheet.xlsx', '');
    await click('tbl', '/home/user/my sheet.xlsx');
    expect(await root.readFile(opened)).toBe('/home/user/my sheet.xlsx\n');
});

/** Shows an installation of LibreOffice whose program says how it was started. */
function installLibreOffice(place) {
    const folder = root.hostPath('/tmp/libreoffice');
    const program = path.join(folder, 'program');
    fs.mkdirSync(program, { recursive: true });
    fs.writeFileSync(path.join(program, 'bootstraprc'), 'ProductKey=LibreOffice 24.8\n');
    const script = '#!/bin/sh\nprintf "%s\\n" "$0" "$@"\n';
    fs.writeFileSync(path.join(program, 'soffice'), script, { mode: 0o755 });
    root.bind(folder, place);
    return `${place}/program/soffice`;
}

test('without the suite LibreOffice opens the documents', async () => {
    const program = installLibreOffice('/usr/lib/libreoffice');
    const words = async (...args) => {
        const { status, stdout } = await root.run(['/suite/office/opencomponent', ...args]);
        expect(status).toBe(0);
        return stdout.trimEnd().split('\n');
    };
    expect(await words('vyr', 'my text.docx', '--x')).toEqual([program, 'my text.docx', './--x']);
    expect(await words('tbl')).toEqual([program, '--calc']);
    expect(await words('board')).toEqual([program, '--draw']);
    expect(await words('vyroffice')).toEqual([program]);
});

test('the chosen one of several opens them', async () => {
    installLibreOffice('/usr/lib/libreoffice');
    const other = installLibreOffice('/opt/libreoffice24.8');
    const choice = ['/suite/office/assistantctl', 'doctor', '--suite', '/opt/libreoffice24.8'];
    expect((await root.run(choice)).status).toBe(0);
    const { stdout } = await root.run(['/suite/office/opencomponent', 'shw']);
    expect(stdout).toBe(`${other}\n--impress\n`);
});

test('without any suite a shortcut says what is missing and what to do', async () => {
    root.smallDisk('/usr/lib/libreoffice', 4096);
    const end = await root.run(['/suite/office/opencomponent', 'vyr', '/home/user/a.docx']);
    expect(end.status).toBe(1);
    expect(end.stderr).toMatch(/program "vyr" is not on this machine/);
    expect(end.stderr).toMatch(/Install the office suite or LibreOffice, or open/);
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
