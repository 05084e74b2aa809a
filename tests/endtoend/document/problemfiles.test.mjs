import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { openDialog, runCommand, Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const workDirectory = '/home/user/.local/share/Orvane/tmp';
const toolPath = '/suite/office/vyrEnvCheckTool';
const filters = {
    writer: 'VYR/Word Files(*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm)',
    presentation: 'SHW/PowerPoint Files(*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx *.potx)',
};

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.recordingFake('xdg-open');
});

afterEach(async () => root.dispose());

async function writeDocument(name, content = 'a document') {
    await root.writeFile(`/home/user/${name}`, content);
    return `/home/user/${name}`;
}

/** A check tool that records its arguments and prints to this PDF. */
function installTool(pdf, { before = '' } = {}) {
    return root.writeFile(
        toolPath,
        `#!/bin/bash
printf '%s\\0' "$#" "$@" >> /fakecalls/vyrEnvCheckTool
${before}
mkdir -p ${workDirectory}
echo '%PDF-1.7' > '${workDirectory}/${pdf}'
`,
        { mode: 0o755 },
    );
}

describe('a layout problem', () => {
    const choose = (session, ...paths) =>
        session.send({ command: 'chooselayouterrorfile', choose: paths });
    const open = async (session) => session.send({ command: 'openlaytouerrorfile' });

    test('is chosen in a dialog and opened by the desktop', async () => {
        const path = await writeDocument('报告 1.docx');
        const session = Session.start(root);
        expect((await choose(session, path)).result).toBe(base64(path));
        expect(session.traced('dialog')).toEqual([
            openDialog(path, [
                filters.writer,
                'TBL/Excel Files(*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx *.xltm *.xlsb)',
                filters.presentation,
            ]),
        ]);
        expect((await open(session)).result).toBe('success');
        expect(session.traced('opened').map(({ url }) => decodeURI(url))).toEqual([
            `file://${path}`,
        ]);
        await session.close();
    });

    test('cancelling the dialog keeps the earlier file', async () => {
        const path = await writeDocument('a.docx');
        const session = Session.start(root);
        await choose(session, path);
        expect((await choose(session)).result).toBe('error');
        expect((await open(session)).result).toBe('success');
        expect(session.traced('opened')).toHaveLength(1);
        await session.close();
    });

    test('a file deleted before it is opened is an error, and so is a missing one', async () => {
        const path = await writeDocument('a.docx');
        const session = Session.start(root);
        expect((await open(session)).result).toBe('error');
        await choose(session, path);
        await root.remove(path);
        expect((await open(session)).result).toBe('error');
        expect(session.traced('opened')).toEqual([]);
        await session.close();
    });

    test('an executable file has no result', async () => {
        const path = await writeDocument('a.docx', '#!/bin/sh\ntouch /tmp/ran\n');
        const session = Session.start(root);
        await choose(session, path);
        expect(await open(session)).not.toHaveProperty('result');
        expect(session.traced('opened')).toEqual([]);
        await session.close();
    });
});

describe('a print problem', () => {
    test('is printed by the check tool and shown in the desktop’s viewer', async () => {
        await installTool('report.pdf');
        const path = await writeDocument('report.final.DOCX');
        const end = await runCommand(
            root,
            'openprinterrorfile',
            {},
            { choose: [path], trace: true },
        );
        expect(end).toMatchObject({ status: 0, answer: { result: base64(path) } });
        const [dialog, printed, shown] = end.events;
        expect(dialog.filters).toEqual([
            filters.writer,
            'TBL/Excel Files(*.tbl *.tbt *.xls *.xlt *.xlsx *.xlsm *.xltx *.xltm *.xlsb)',
            filters.presentation,
        ]);
        expect(dialog).toMatchObject({
            mode: 'open',
            caption: 'Open File',
            directory: '/home/user',
        });
        expect(printed).toEqual({
            type: 'started',
            program: toolPath,
            arguments: ['print', 'vyr', path],
            workingDirectory: '',
            detached: false,
        });
        expect(shown).toEqual({
            type: 'started',
            program: '/bin/bash',
            arguments: ['xdg-open', `${workDirectory}/report.pdf`],
            workingDirectory: '',
            detached: true,
        });
        expect(await root.callsOf('vyrEnvCheckTool')).toEqual([['print', 'vyr', path]]);
    });

    test('the viewer really is started with the PDF', async () => {
        await installTool('a.pdf');
        const path = await writeDocument('a.xlsx');
        const session = Session.start(root);
        await session.send({ command: 'openprinterrorfile', choose: [path] });
        await waitFor(async () => (await root.callsOf('xdg-open')).length > 0, {
            what: 'the viewer',
        });
        expect(await root.callsOf('xdg-open')).toEqual([[`${workDirectory}/a.pdf`]]);
        await session.close();
    });

    test('a cancelled dialog and a file of another kind are errors', async () => {
        await installTool('a.pdf');
        const cancelled = await runCommand(root, 'openprinterrorfile');
        expect(cancelled).toMatchObject({ status: 1, answer: { result: 'error' } });
        const path = await writeDocument('a.txt');
        const other = await runCommand(
            root,
            'openprinterrorfile',
            {},
            { choose: [path], trace: true },
        );
        expect(other.answer.result).toBe('error');
        expect(await root.callsOf('vyrEnvCheckTool')).toEqual([]);
    });

    test('without a PDF of that name it is an error', async () => {
        await installTool('report.final.pdf');
        const path = await writeDocument('report.final.docx');
        const end = await runCommand(
            root,
            'openprinterrorfile',
            {},
            { choose: [path], trace: true },
        );
        expect(end.answer.result).toBe('error');
        expect(end.events.filter(({ type }) => type === 'started')).toHaveLength(1);
    });

    test('an existing PDF counts even if the tool fails', async () => {
        await root.writeFile(`${workDirectory}/a.pdf`, '%PDF');
        const path = await writeDocument('a.pptx');
        for (const before of ['exit 3', 'kill -SEGV $$']) {
            await installTool('a.pdf', { before });
            const end = await runCommand(root, 'openprinterrorfile', {}, { choose: [path] });
            expect(end.answer.result).toBe(base64(path));
        }
        await root.remove(toolPath);
        const end = await runCommand(root, 'openprinterrorfile', {}, { choose: [path] });
        expect(end.answer.result).toBe(base64(path));
    });
});
