import { setTimeout as pause } from 'node:timers/promises';

import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand, Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const workDirectory = '/home/user/.local/share/Orvane/tmp';
const staged = `${workDirectory}/officeassis_script/extractfont.sh`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    for (const name of ['vyr', 'tbl', 'shw']) {
        if (await root.exists(`/suite/office/${name}`)) await root.remove(`/suite/office/${name}`);
    }
});

afterEach(async () => root.dispose());

const compare = (path, options) =>
    runCommand(root, 'comparefont', { filepath: base64(path) }, options);
const answered = async (path) => (await compare(path)).answer.result;

/** A suite program that records its arguments and writes this line into its answer. */
async function installComponent(name, line, { before = '', after = '' } = {}) {
    await root.writeFile(
        `/suite/office/${name}`,
        `#!/bin/bash
printf '%s\\0' "$#" "$@" >> /fakecalls/${name}
${before}
printf '[vyrtool]\\n%s\\n' '${line}' > ${workDirectory}/${name}missfonts.ini
${after}
`,
        { mode: 0o755 },
    );
}

async function writeDocument(name) {
    await root.writeFile(`/home/user/${name}`, 'a document');
    return `/home/user/${name}`;
}

describe('comparefont', () => {
    test.each([
        ['vyr', 'letter.docx'],
        ['tbl', 'sheet.xlsb'],
        ['shw', 'slides.ppsx'],
        ['vyr', 'native.vyt'],
        ['tbl', 'native.tbt'],
        ['shw', 'native.sht'],
    ])('has %s open %s and tells the fonts that it lacks', async (component, name) => {
        await installComponent(component, 'MissFonts="Arial, Noto Sans CJK"');
        const path = await writeDocument(name);
        const end = await compare(path, { trace: true });
        expect(end.answer.result).toEqual({ MissFonts: base64('Arial, Noto Sans CJK') });
        expect(end.events[0]).toEqual({
            type: 'started',
            program: 'bash',
            arguments: [staged, '/suite/office', component, path],
            workingDirectory: '',
            detached: false,
        });
        expect(await root.callsOf(component)).toEqual([['-savemissfont', path]]);
        expect(await root.exists(`${workDirectory}/${component}missfonts.ini`)).toBe(true);
    });

    test('report.DOCX is a writer’s document', async () => {
        await installComponent('vyr', 'MissFonts=Arial');
        expect(await answered(await writeDocument('report.DOCX'))).toEqual({
            MissFonts: base64('Arial'),
        });
    });

    test('a document without a suffix is an error and nothing runs', async () => {
        const end = await compare(await writeDocument('report'), { trace: true });
        expect(end).toMatchObject({ status: 1, events: [{ type: 'answer', result: 'error' }] });
    });

    test('an old list of an earlier run is deleted and not reported', async () => {
        await root.writeFile(`${workDirectory}/vyrmissfonts.ini`, '[vyrtool]\nMissFonts=old\n');
        expect(await answered(await writeDocument('a.docx'))).toBe('error');
        expect(await root.exists(`${workDirectory}/vyrmissfonts.ini`)).toBe(false);
    });

    test('an answer without the key is an empty text', async () => {
        await installComponent('vyr', 'Other=1');
        expect(await answered(await writeDocument('a.docx'))).toEqual({ MissFonts: '' });
    });

    test('names outside ASCII come through', async () => {
        await installComponent('vyr', 'MissFonts=宋体|方正小标宋');
        expect(await answered(await writeDocument('报告.doc'))).toEqual({
            MissFonts: base64('宋体|方正小标宋'),
        });
    });

    test('a path with spaces and pattern characters is opened unchanged', async () => {
        await installComponent('vyr', 'MissFonts=Arial');
        const path = await writeDocument('my * [report] $(touch ran).docx');
        expect(await answered(path)).toEqual({ MissFonts: base64('Arial') });
        expect(await root.callsOf('vyr')).toEqual([['-savemissfont', path]]);
        expect(await root.exists('/home/user/ran')).toBe(false);
    });

    test('a document that is missing is an error', async () => {
        await installComponent('vyr', 'MissFonts=Arial');
        expect(await answered('/home/user/none.docx')).toBe('error');
        expect(await root.callsOf('vyr')).toEqual([]);
    });

    test('a component that is missing, fails or crashes before it answers is an error', async () => {
        const path = await writeDocument('a.xlsx');
        expect(await answered(path)).toBe('error');
        await installComponent('tbl', 'MissFonts=Arial', { before: 'exit 4' });
        expect(await answered(path)).toBe('error');
        await installComponent('tbl', 'MissFonts=Arial', { before: 'kill -SEGV $$' });
        expect(await answered(path)).toBe('error');
    });

    test('a component that fails after writing its answer counts as answered', async () => {
        await installComponent('tbl', 'MissFonts=Arial', { after: 'exit 4' });
        expect(await answered(await writeDocument('a.xlsx'))).toEqual({
            MissFonts: base64('Arial'),
        });
    });

    test.each(['', '%%%', 'a', 'L', '====', '/home/user/a.docx', 'AAAA', '\u{10ffff}'])(
        'the argument "%s", which is not a path in base64, is an error',
        async (filepath) => {
            expect(await runCommand(root, 'comparefont', { filepath })).toMatchObject({
                status: 1,
                answer: { result: 'error' },
            });
        },
    );

    test('an argument that is missing or not text is an error', async () => {
        expect((await runCommand(root, 'comparefont')).answer.result).toBe('error');
        for (const filepath of [null, 7, [], {}]) {
            expect((await runCommand(root, 'comparefont', { filepath })).answer.result).toBe(
                'error',
            );
        }
    });

    test('without a staging directory it is an error', async () => {
        const end = await compare(await writeDocument('a.docx'), {
            env: { HELIO_SUITE_HOME: '/proc/none' },
        });
        expect(end.answer.result).toBe('error');
    });

    test('an answer of garbage is an empty text', async () => {
        await installComponent('vyr', '', {
            after: `head -c 300000 /dev/urandom > ${workDirectory}/vyrmissfonts.ini`,
        });
        expect(await answered(await writeDocument('a.docx'))).toEqual({ MissFonts: '' });
    });

    test('fifty megabytes that the suite prints stay out of the way', async () => {
        await installComponent('vyr', 'MissFonts=Arial', { before: 'yes | head -c 52428800' });
        expect(await answered(await writeDocument('a.docx'))).toEqual({
            MissFonts: base64('Arial'),
        });
    });

    test('on a full disk the suite cannot answer, which is an error', async () => {
        await installComponent('vyr', 'MissFonts=Arial');
        const path = await writeDocument('a.docx');
        root.smallDisk(workDirectory, 64 * 1024);
        const end = await root.run([
            'bash',
            '-c',
            `
            /suite/office/assistantctl comparefont filepath=${base64(path)}
            head -c 1000000 /dev/zero > ${workDirectory}/filling 2> /dev/null
            /suite/office/assistantctl comparefont filepath=${base64(path)}`,
        ]);
        const results = end.stdout
            .split('\n')
            .slice(0, -1)
            .map((line) => JSON.parse(line).result);
        expect(results).toEqual([{ MissFonts: base64('Arial') }, 'error']);
    });

    test('a suite that hangs blocks its page until it ends', async () => {
        await installComponent('vyr', 'MissFonts=Arial', {
            before: 'touch ~/runs; while [ ! -e ~/go ]; do sleep 0.02; done',
        });
        const path = await writeDocument('a.docx');
        const session = Session.start(root);
        const compared = session.send({ command: 'comparefont', args: { filepath: base64(path) } });
        await waitFor(() => root.exists('/home/user/runs'), { what: 'the suite' });
        const state = session.send({ command: 'getDumpState' });
        await pause(500);
        expect(session.events.filter(({ type }) => type === 'answer')).toEqual([]);
        await root.writeFile('/home/user/go', '');
        expect((await compared).result).toEqual({ MissFonts: base64('Arial') });
        expect((await state).result.enable).toBe(true);
        expect((await session.close()).status).toBe(0);
    });
});
