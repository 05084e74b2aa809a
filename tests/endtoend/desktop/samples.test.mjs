import fs from 'node:fs';
import path from 'node:path';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { samples, typeOf } from '../plugin/config/desktoptools.mjs';
import { suffixesOfTag } from '../plugin/config/scriptrunner.mjs';

const mimeDirectory = '/home/user/.local/share/mime';
const folder = '/suite/office/asso_template';
const openXml = 'application/vnd.openxmlformats-officedocument';
const sampleText = '用于检查文件类型和默认应用程序的示例文档。';
const hasOfficeSuite = fs.existsSync('/usr/bin/soffice');

/** The type by content alone, which cannot tell macro documents and templates of Open XML apart. */
const content = {
    '.doc': 'application/msword',
    '.dot': 'application/msword',
    '.xls': 'application/vnd.ms-excel',
    '.xlt': 'application/vnd.ms-excel',
    '.ppt': 'application/vnd.ms-powerpoint',
    '.pps': 'application/vnd.ms-powerpoint',
    '.pot': 'application/vnd.ms-powerpoint',
    '.rtf': 'text/rtf',
};
const families = {
    doc: 'wordprocessingml.document',
    dot: 'wordprocessingml.document',
    xls: 'spreadsheetml.sheet',
    xlt: 'spreadsheetml.sheet',
    ppt: 'presentationml.presentation',
    pps: 'presentationml.presentation',
    pot: 'presentationml.presentation',
};

function contentType(suffix) {
    const family = families[suffix.slice(1, 4)];
    return content[suffix] ?? (family ? `${openXml}.${family}` : 'application/zip');
}

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

async function output(command, options) {
    const end = await root.run(command, options);
    expect(end, command.join(' ')).toMatchObject({ status: 0 });
    return end.stdout;
}

/** Each file's type according to GIO, which GTK file managers use. */
async function desktopTypes(files) {
    const text = await output(['gio', 'info', '-a', 'standard::content-type', ...files]);
    return [...text.matchAll(/content-type: (.*)/g)].map(([, type]) => type);
}

async function repairTypes() {
    await root.makeDirectory(`${mimeDirectory}/packages`);
    await runCommand(root, 'fileassorepair');
    await output(['update-mime-database', mimeDirectory]);
}

/** Converts the files to a plain-text format; gives the texts by file name. */
async function convert(files, format, target = '/tmp/converted') {
    await output(
        [
            'soffice',
            '-env:UserInstallation=file:///tmp/profile',
            '--headless',
            '--convert-to',
            format,
            '--outdir',
            target,
            ...files,
        ],
        { timeoutMs: 200_000 },
    );
    return Object.fromEntries(
        await Promise.all(
            (await root.list(target)).map(async (name) => [
                name,
                await root.readFile(`${target}/${name}`),
            ]),
        ),
    );
}

describe('the sample documents', () => {
    test('are what their suffixes say', async () => {
        const files = samples.map(({ suffix }) => `${folder}/vyr${suffix}`);
        const found = (await output(['file', '--brief', '--mime-type', ...files])).split('\n');
        samples.forEach(({ suffix }, at) => expect(found[at], suffix).toBe(contentType(suffix)));
        expect((await root.list(folder)).length).toBe(samples.length);
    });

    test('have none of the suite’s types before the repair, and each its own after it', async () => {
        const files = samples.map(({ suffix }) => `${folder}/vyr${suffix}`);
        for (const type of await desktopTypes(files)) expect(type).not.toContain('vyr-office');
        await repairTypes();
        const expected = samples.map(({ suffix }) => typeOf(suffix));
        expect(await desktopTypes(files)).toEqual(expected);
        // On such a desktop xdg-mime passes the question on to GIO.
        const env = { XDG_CURRENT_DESKTOP: 'GNOME' };
        for (const suffix of ['.dot', '.pot', '.vyr', '.rtf']) {
            expect(
                (
                    await output(['xdg-mime', 'query', 'filetype', `${folder}/vyr${suffix}`], {
                        env,
                    })
                ).trim(),
            ).toBe(typeOf(suffix));
        }
    });

    test.runIf(hasOfficeSuite)(
        'of public formats are read by an office suite',
        async () => {
            const formats = { vyr: 'fodt', tbl: 'fods', shw: 'fodp' };
            for (const [tag, format] of Object.entries(formats)) {
                const suffixes = suffixesOfTag[tag].filter(
                    (suffix) => contentType(suffix) !== 'application/zip',
                );
                const files = [];
                for (const suffix of suffixes) {
                    files.push(`/tmp/${tag}${suffix.slice(1)}${suffix}`);
                    await root.writeFile(
                        files.at(-1),
                        await root.readFile(`${folder}/vyr${suffix}`, null),
                    );
                }
                const texts = await convert(files, format, `/tmp/${tag}`);
                expect(Object.keys(texts).sort()).toEqual(
                    suffixes.map((suffix) => `${tag}${suffix.slice(1)}.${format}`).sort(),
                );
                for (const [name, text] of Object.entries(texts)) {
                    expect(text.includes(sampleText), name).toBe(true);
                }
            }
        },
        600_000,
    );
});

describe('documents of other writers', () => {
    const written = {
        docx: ['docx', 'doc', 'dotx', 'dot', 'rtf'],
        xlsx: ['xlsx', 'xls', 'xltx', 'xlt', 'xlsm'],
        pptx: ['pptx', 'ppt', 'potx', 'pot', 'pps', 'pptm'],
    };

    test.runIf(hasOfficeSuite)(
        'of an office suite are the suite’s after the repair',
        async () => {
            await repairTypes();
            for (const [source, formats] of Object.entries(written)) {
                for (const format of formats) {
                    await convert([`${folder}/vyr.${source}`], format, '/tmp/written');
                    expect(await desktopTypes([`/tmp/written/vyr.${format}`])).toEqual([
                        typeOf(`.${format}`),
                    ]);
                }
            }
        },
        600_000,
    );

    test('of python3-docx are the suite’s after the repair, in any case of letters', async () => {
        await repairTypes();
        await output([
            '/usr/bin/python3',
            '-c',
            `
import docx
document = docx.Document()
document.add_paragraph('text')
document.save('/tmp/report.docx')
document.save('/tmp/REPORT.DOCX')`,
        ]);
        expect(await desktopTypes(['/tmp/report.docx', '/tmp/REPORT.DOCX'])).toEqual([
            typeOf('.docx'),
            typeOf('.docx'),
        ]);
    });
});

test('the own formats name their type and hold their text', async () => {
    const { stdout } = await root.run(['unzip', '-p', `${folder}/vyr.shtx`, 'mimetype']);
    expect(stdout).toBe('application/vyr-office.shtx');
    expect(await output(['unzip', '-p', `${folder}/vyr.shtx`, 'content.xml'])).toContain(
        sampleText,
    );
    // The type must be at a fixed place near the start, where type detection looks for it.
    const start = fs.readFileSync(root.hostPath(path.join(folder, 'vyr.vyr'))).subarray(30, 60);
    expect(start.toString()).toBe('mimetypeapplication/vyr-office');
});

test('the environment report includes the project’s version', async () => {
    const project = fs.readFileSync(new URL('../../../CMakeLists.txt', import.meta.url), 'utf8');
    const [, version] = project.match(/project\(office-assistant VERSION ([\d.]+)/);
    const { answer } = await runCommand(root, 'stratcheckenv');
    expect(answer.result.vyrinfo).toBe(`Version:${version}.0`);
});
