import fs from 'node:fs';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { beside } from '../beside.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const toolPath = '/suite/office/vyrEnvCheckTool';
const workDirectory = '/home/user/.local/share/Orvane/tmp';
const officeSuite = '/usr/lib/libreoffice';
const programs = ['/usr/bin/soffice', '/usr/bin/libreoffice'];
const hasOfficeSuite = fs.existsSync(`${officeSuite}/program/soffice`);

const server = '/server/node';
/** On its first start a suite writes its profile. */
const patience = 200_000;
/** Records each request. */
const pictureServer = `
${server} -e 'require("http").createServer((request, answer) => {
    require("fs").appendFileSync("/tmp/asked", request.url + "\\n");
    answer.end();
}).listen(8090, "127.0.0.1")' &
await bash -c 'exec 3<> /dev/tcp/127.0.0.1/8090'
`;
/** Two pages and a linked picture, as suites write them into files of any suffix. */
const documentSource = `<html><body><p>Quarterly report</p>
<img src="http://127.0.0.1:8090/picture.png">
<p style="page-break-before: always">second page</p></body></html>
`;

let root;

afterEach(async () => root.dispose());

const print = (program, document, options) =>
    root.run([toolPath, 'print', program, document], { timeoutMs: patience, ...options });
const pagesOf = (pdf) => pdf.match(/\/Type\s*\/Page\b/g)?.length;

describe.skipIf(!hasOfficeSuite)('with an office suite', () => {
    beforeEach(async () => {
        root = await SandboxRoot.create({ suite: true });
        root.bind(fs.realpathSync(process.execPath), server);
        await root.recordingFake('xdg-open');
    });

    test('a print problem is printed by it and shown, and fetches nothing', async () => {
        const path = '/home/user/Quartals bericht.final.DOCX';
        await root.writeFile(path, documentSource);
        const prepared = await beside(root, pictureServer);
        const end = await runCommand(
            prepared,
            'openprinterrorfile',
            {},
            { choose: [path], trace: true, timeoutMs: patience },
        );
        expect(end.answer.result).toBe(base64(path));
        expect(end.events.find(({ detached }) => detached)).toMatchObject({
            arguments: ['xdg-open', `${workDirectory}/Quartals bericht.pdf`],
        });
        const pdf = await root.readFile(`${workDirectory}/Quartals bericht.pdf`, 'latin1');
        expect(pdf).toMatch(/^%PDF-1\.[^]*%%EOF\s*$/);
        expect(pagesOf(pdf)).toBe(2);
        expect(await root.exists('/tmp/asked')).toBe(false);
        expect(await root.list('/home/user')).not.toContainEqual(expect.stringMatching(/lock/));
        expect(
            (await root.list(workDirectory)).filter((name) => name.startsWith('print-')),
        ).toEqual([]);
    });

    test('what it cannot read leaves no PDF', async () => {
        await root.writeFile('/home/user/a.docx', 'PK\x03\x04 and nothing more');
        await root.writeFile(`${workDirectory}/a.pdf`, '%PDF earlier');
        const end = await print('vyr', '/home/user/a.docx');
        expect(end).toMatchObject({ status: 1, stdout: '' });
        expect(end.stderr).toMatch(
            /^vyrEnvCheckTool: \/home\/user\/a\.docx could not be printed: .+\n$/,
        );
        expect(await root.list(workDirectory)).toEqual([]);
    });
});

describe('without an office suite', () => {
    beforeEach(async () => {
        root = await SandboxRoot.create({ suite: true, hide: programs });
        await root.makeDirectory('/home/user/nothing');
        if (hasOfficeSuite) root.bind(root.hostPath('/home/user/nothing'), officeSuite);
        await root.writeFile('/home/user/a.docx', documentSource);
        await root.writeFile(`${workDirectory}/a.pdf`, '%PDF earlier');
    });

    test('a print is refused with what to install, and leaves no PDF', async () => {
        const end = await print('vyr', '/home/user/a.docx');
        expect(end).toMatchObject({ status: 1, stdout: '' });
        expect(end.stderr).toMatch(
            /^vyrEnvCheckTool: no office suite that can print .*libreoffice-writer.*\n$/,
        );
        expect(await root.list(workDirectory)).toEqual([]);
    });

    test('a print problem is an error, and no earlier PDF is taken for it', async () => {
        const end = await runCommand(
            root,
            'openprinterrorfile',
            {},
            { choose: ['/home/user/a.docx'], trace: true },
        );
        expect(end).toMatchObject({ status: 1, answer: { result: 'error' } });
        expect(end.events.filter(({ detached }) => detached)).toEqual([]);
    });
});

describe('an office suite of the test’s own', () => {
    beforeEach(async () => {
        root = await SandboxRoot.create({ suite: true });
        await root.writeFile('/home/user/a.docx', documentSource);
    });

    test('that hangs ends with the tool, and with all that it has started', async () => {
        await root.fake(
            'soffice',
            `#!/bin/bash
sleep 600 &
echo $! > ~/child
mv ~/child ~/started
wait
`,
        );
        const end = await root.run([
            'bash',
            '-c',
            `${toolPath} print vyr ~/a.docx &
tool=$!
until [ -e ~/started ]; do sleep 0.02; done
kill -TERM $tool
wait $tool
echo "status $?"
while kill -0 $(cat ~/started) 2> /dev/null; do sleep 0.02; done
echo gone`,
        ]);
        expect(end.stdout).toBe('status 143\ngone\n');
        expect((await root.list(workDirectory)).filter((name) => name.endsWith('.pdf'))).toEqual(
            [],
        );
    });

    test('that was chosen prints, whatever PATH has', async () => {
        const folder = root.hostPath('/tmp/libreoffice');
        fs.mkdirSync(`${folder}/program`, { recursive: true });
        fs.writeFileSync(`${folder}/program/bootstraprc`, 'ProductKey=LibreOffice 24.8\n');
        const script = '#!/bin/sh\necho %PDF-1.7 chosen > "$7/a.pdf"\n';
        fs.writeFileSync(`${folder}/program/soffice`, script, { mode: 0o755 });
        root.bind(folder, '/opt/libreoffice24.8');
        await root.fake('soffice', '#!/bin/sh\necho %PDF-1.7 other > "$7/a.pdf"\n');
        const pdf = () => root.readFile(`${workDirectory}/a.pdf`);
        await print('vyr', '/home/user/a.docx');
        expect(await pdf()).toBe('%PDF-1.7 other\n');
        const choice = ['/suite/office/assistantctl', 'doctor', '--suite', '/opt/libreoffice24.8'];
        expect((await root.run(choice)).status).toBe(0);
        await print('vyr', '/home/user/a.docx');
        expect(await pdf()).toBe('%PDF-1.7 chosen\n');
    });

    test('that fills the disk leaves no PDF', async () => {
        root.smallDisk('/home/user/.local/share/Orvane', 256 * 1024);
        await root.fake(
            'soffice',
            `#!/bin/bash
{ echo %PDF-1.7; cat /dev/zero; } > "$7/a.pdf"
`,
        );
        const end = await root.run([
            'bash',
            '-c',
            `${toolPath} print vyr ~/a.docx; echo "status $?"; find ${workDirectory} -name '*.pdf'`,
        ]);
        expect(end.stdout).toBe('status 1\n');
        expect(end.stderr).toMatch(/^vyrEnvCheckTool: .* could not be printed: .*No space left/);
    });
});
