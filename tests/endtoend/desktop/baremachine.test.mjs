import fs from 'node:fs';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { installEntries, suiteEntries } from './suiteentries.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { entries, samples, typeOf } from '../plugin/config/desktoptools.mjs';

const mimeDirectory = '/home/user/.local/share/mime';
const folder = '/suite/office/asso_template';
const fontsFile = '/home/user/fonts.conf';

/** Nine scripts on a machine with nothing installed but this project and its data. */
let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.makeDirectory('/home/user/Desktop');
});

afterEach(async () => root.dispose());

async function answer(command, args, options) {
    const end = await runCommand(root, command, args, options);
    expect(end).toMatchObject({ status: 0, stderr: '' });
    return end.answer.result;
}

const values = (applications) => applications.flatMap((application) => Object.values(application));
const flags = (applications) => values(applications).map((value) => value.split('|')[1]);

async function repair() {
    await root.makeDirectory(`${mimeDirectory}/packages`);
    await answer('fileassorepair');
    // A desktop does this by itself when a package of types is added.
    await root.run(['update-mime-database', mimeDirectory]);
}

describe('file associations', () => {
    test('before a repair are other programs’, for all 39 samples', async () => {
        for (const command of ['getassomime', 'getassoopen']) {
            const listed = flags(await answer(command));
            expect(listed).toHaveLength(39);
            expect(new Set(listed)).toEqual(new Set(['false']));
        }
    });

    test('after a repair have the suite’s types, and nothing opens with a suite that is not there', async () => {
        await repair();
        await repair();
        const types = await answer('getassomime');
        expect(values(types).sort()).toEqual(
            samples.map(({ suffix }) => `${typeOf(suffix)}|true`).sort(),
        );
        expect(new Set(flags(await answer('getassoopen')))).toEqual(new Set(['false']));
    });

    test('after a repair are opened by those who opened them before', async () => {
        await root.writeFile(
            '/usr/share/applications/other.desktop',
            `[Desktop Entry]
Type=Application
Name=Other
Exec=true %f
MimeType=application/vnd.openxmlformats-officedocument.wordprocessingml.document;
`,
        );
        await root.run(['update-desktop-database', '/usr/share/applications']);
        await repair();
        const { stdout } = await root.run(['gio', 'mime', typeOf('.docx')]);
        expect(stdout).toContain('other.desktop');
    });

    test('are the suite’s beside all the applications of this machine', async () => {
        root.bind('/usr/share/applications', '/usr/share/applications');
        for (const [name, text] of Object.entries(suiteEntries())) {
            await root.writeFile(`/home/user/.local/share/applications/${name}`, text);
        }
        await repair();
        await repair();
        for (const command of ['getassomime', 'getassoopen']) {
            expect(new Set(flags(await answer(command)))).toEqual(new Set(['true']));
        }
    });

    test('are the suite’s once its entries are known to the desktop', async () => {
        await installEntries(root);
        await repair();
        await repair();
        expect(new Set(flags(await answer('getassoopen')))).toEqual(new Set(['true']));
        const { stdout } = await root.run(['gio', 'mime', typeOf('.xlsx')]);
        expect(stdout).toContain(entries.tbl);
    });
});

test('shortcuts go to the desktop in either set', async () => {
    expect((await answer('getdesktopiconfile')).icon).toBe('');
    await answer('fixfouricon');
    const separate = (await answer('getdesktopiconfile')).icon.split('|');
    expect(separate).toHaveLength(8);
    await answer('fixoneicon');
    expect((await answer('getdesktopiconfile')).icon).toBe('vyr-office-tessaly.desktop');
});

test('a sample’s details and permissions are listed', async () => {
    await answer('addconfigfile', {}, { choose: [`${folder}/vyr.docx`] });
    await runCommand(
        root,
        'exportspecialfileperm',
        {},
        { choose: [`${folder}/vyr.docx`, '/home/user/permissions.txt'] },
    );
    expect(await root.readFile('/home/user/permissions.txt')).toMatch(
        /^-rw.* user user .*vyr\.docx$/m,
    );
});

test('the installed browsers are listed with their versions', async () => {
    await root.fake('firefox', '#!/bin/sh\necho "Mozilla Firefox 128.0"\n');
    expect((await answer('stratcheckenv')).browserinfo).toContain('128.0');
});

describe('missing fonts', () => {
    beforeEach(() =>
        root.writeFile(
            fontsFile,
            `<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><cachedir>/tmp/fontcache</cachedir></fontconfig>
`,
        ),
    );

    const twoFonts = 'DejaVu Sans;Noto Sans CJK SC';
    test.each([
        ['.docx', twoFonts],
        ['.docm', twoFonts],
        ['.dotx', twoFonts],
        ['.doc', twoFonts],
        ['.dot', twoFonts],
        ['.pptx', twoFonts],
        ['.ppsx', twoFonts],
        ['.ppt', 'DejaVu Sans'],
        ['.xlsx', 'DejaVu Sans'],
        ['.xls', 'DejaVu Sans'],
    ])('of the sample %s are %s on a machine without fonts', async (suffix, fonts) => {
        const { MissFonts } = await answer(
            'comparefont',
            { filepath: base64(`${folder}/vyr${suffix}`) },
            { env: { FONTCONFIG_FILE: fontsFile } },
        );
        expect(
            Buffer.from(MissFonts, 'base64')
                .toString()
                .split(/[;,] ?/)
                .sort(),
        ).toEqual(fonts.split(';').sort());
    });

    test('of a sample are none on a machine that has them', async () => {
        const { MissFonts } = await answer('comparefont', {
            filepath: base64(`${folder}/vyr.docx`),
        });
        expect(MissFonts).toBe('');
    });
});

test('a feedback archive holds a sample, the report and the suite’s version', async () => {
    await root.recordingFake('xdg-open');
    await answer(
        'archivepackage',
        {
            archiveType: 'other',
            archiveDescribe: 'all of it',
            archiveSample: `${folder}/vyr.shd`,
            archiveSysInfo: 'true',
            archiveVyrInfo: true,
        },
        { choose: ['/home/user/feedback'] },
    );
    const listed = await root.run(['tar', '-tzf', '/home/user/feedback.tar.gz']);
    expect(listed.status).toBe(0);
    for (const name of ['describe.txt', 'setup.cfg', 'sysinfo.txt', 'vyr.shd']) {
        expect(listed.stdout).toContain(`/${name}\n`);
    }
    const target = '/home/user/.local/share/Orvane/tmp/archive/vyr.shd';
    const packed = await root.run(['tar', '-xzOf', '/home/user/feedback.tar.gz', target.slice(1)]);
    expect(packed.stdoutBytes.equals(fs.readFileSync(root.hostPath(`${folder}/vyr.shd`)))).toBe(
        true,
    );
});
