import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';

import { afterAll, beforeEach, afterEach, describe, expect, test } from 'vitest';

import { FaultTable } from './faulttable.mjs';
import { recent } from './items.mjs';
import { saidBy } from './macro.mjs';
import { OfficeRoot, profile, removeUsedProfile } from './officeroot.mjs';

/** A LibreOffice with windows, and fonts, such as ./test libreoffice unpacks. */
const withWindows = process.env.LIBREOFFICE_WINDOWS ?? '';
const withFonts = process.env.LIBREOFFICE_FONTS ?? '';
const place = '/usr/lib/libreoffice';
const desktop = (name) => ({ DISPLAY: ':9', XDG_CURRENT_DESKTOP: name });
const writer = ['soffice', '--writer'];

const inWindows = 'in its windows';
const table = new FaultTable();

let begin;
let office;
let trees;

/** Takes down that a fault, which the administrator mends, was seen and named. */
function named(name, check, seen, mended = 'the command is shown') {
    table.note(
        { name, check },
        {
            'seen in LibreOffice': seen,
            'named alone': 'yes',
            mended,
            s: (Date.now() - begin) / 1000,
        },
    );
}

beforeEach(async () => {
    begin = Date.now();
    office = await OfficeRoot.create();
    trees = [];
});

afterEach(async () => {
    await office.dispose();
    for (const tree of trees) fs.rmSync(tree, { recursive: true });
});

afterAll(() => {
    removeUsedProfile();
    if (withWindows) table.write('installations');
});

/** Shows the installation without some of its files. */
function install(...missing) {
    const tree = fs.mkdtempSync(`${withWindows}-part-`);
    trees.push(tree);
    execFileSync('cp', ['-al', `${withWindows}/.`, tree]);
    for (const name of missing) fs.rmSync(path.join(tree, 'program', name));
    office.bind(tree, place);
    return tree;
}

/** Shows a directory with nothing in it. */
function bindNothing(inside) {
    const nothing = path.join(office.hostPath('/tmp'), path.basename(inside));
    fs.mkdirSync(nothing);
    office.bind(nothing, inside);
}

/** A macro in Java of LibreOffice's own, which makes a spreadsheet. */
const javaMacro =
    'vnd.sun.star.script:MemoryUsage.org.libreoffice.example.java_scripts.MemoryUsage.updateMemoryUsage?language=Java&location=share';
const javaSettings = `${profile}/config/javasettings_Linux_X86_64.xml`;
/** The titles of the windows once a macro in Java has run, or LibreOffice says why it cannot. */
async function afterJava() {
    const { windows } = await office.window(['soffice', javaMacro], {
        until: '^Untitled 1 - LibreOffice Calc$|JRE',
    });
    return Object.keys(windows);
}

/** Fonts of its own for the root; more can be added to the directory. */
function fontsOfRoot() {
    const fonts = path.join(office.hostPath('/tmp'), 'fonts');
    fs.cpSync('/usr/share/fonts/truetype/dejavu', path.join(fonts, 'dejavu'), { recursive: true });
    office.bind(fonts, '/usr/share/fonts');
    return fonts;
}

async function commandsFor(check, env) {
    return (await office.plan(check, env)).map((change) => change.command);
}

describe.runIf(withWindows)('a desktop', () => {
    test.each(['GNOME', 'XFCE', ''])('%s has nothing wrong', async (name) => {
        install();
        fs.cpSync(withFonts, fontsOfRoot(), { recursive: true });
        expect(await office.findings(desktop(name), { withFonts: true })).toEqual([]);
        await office.window(writer, {});
        expect(await office.findings(desktop(name), { withFonts: true })).toEqual([]);
    });

    test('without the plug-in for GTK has windows of another kind', async () => {
        install('libvclplug_gtk3lo.so');
        expect(await office.findings(desktop('GNOME'))).toEqual(['gtk-plugin']);
        expect(await commandsFor('gtk-plugin', desktop('GNOME'))).toEqual([
            'apt-get install libreoffice-gtk3',
        ]);
        expect((await office.window(writer, {})).plugins).toEqual(['gen']);
        named('no plug-in for GTK', 'gtk-plugin', inWindows);
    });

    test('without the plug-in for Qt has windows of another kind', async () => {
        install();
        expect(await office.findings(desktop('KDE'))).toEqual(['qt-plugin']);
        expect(await commandsFor('qt-plugin', desktop('KDE'))).toEqual([
            'apt-get install libreoffice-kf5',
        ]);
        const { plugins } = await office.window(writer, { env: { XDG_CURRENT_DESKTOP: 'KDE' } });
        expect(plugins).not.toContain('kf5');
        named('no plug-in for Qt', 'qt-plugin', inWindows);
    });

    test('without the module of its input method is named', async () => {
        install();
        const env = { ...desktop('GNOME'), GTK_IM_MODULE: 'fcitx' };
        expect(await office.findings(env)).toEqual(['input-module']);
        expect(await commandsFor('input-module', env)).toEqual([
            'apt-get install fcitx5-frontend-gtk3',
        ]);
        const modulesFor = async (name) => {
            const stdout = await office.session(`
                GTK_IM_MODULE=${name} soffice --writer >/dev/null 2>&1 &
                await 40 'windows | grep -q Untitled'
                xdotool search --onlyvisible --name Untitled windowfocus key a
                maps=/proc/$(pgrep -x soffice.bin)/maps
                await 5 "grep -q /im- $maps"
                grep -o '/im-.*' $maps
                pkill -KILL -x soffice.bin`);
            return [...new Set(stdout.match(/^\/im-.*$/gm))];
        };
        // The same input with a method that comes with GTK shows that one is asked for.
        expect(await modulesFor('xim')).toEqual(['/im-xim.so']);
        expect(await modulesFor('fcitx')).toEqual([]);
        named('no module of the input method', 'input-module', inWindows);
    });

    test('that forbids windows has none until the line is removed', async () => {
        install();
        const line = 'export SAL_USE_VCLPLUGIN=svp\n';
        await office.writeFile('/home/user/.profile', `umask 022\n${line}`);
        const session = { ...desktop('GNOME'), SAL_USE_VCLPLUGIN: 'svp' };
        expect(await office.findings(session)).toEqual(['no-windows-setting']);
        const env = { SAL_USE_VCLPLUGIN: 'svp' };
        const elsewhere = [...writer, '-env:UserInstallation=file:///tmp/other'];
        expect((await office.window(elsewhere, { env, patience: 8 })).windows).toEqual({});
        expect(await office.fix({ check: 'no-windows-setting', session })).toMatchObject([
            { result: 'repaired' },
        ]);
        expect(await office.readFile('/home/user/.profile')).toBe('umask 022\n');
        expect(await office.findings(desktop('GNOME'))).toEqual([]);
        expect((await office.window(writer, {})).windows).toHaveProperty([
            'Untitled 1 - LibreOffice Writer',
        ]);
        expect(await office.undo()).toBe('undone');
        expect(await office.readFile('/home/user/.profile')).toBe(`umask 022\n${line}`);
        const fault = { name: 'a line that forbids windows', check: 'no-windows-setting' };
        named(fault.name, fault.check, inWindows, 'yes');
        table.note(fault, { undone: 'yes' });
    });

    test('whose Java is gone says so where Java is wanted, until there is one', async () => {
        install();
        expect(await afterJava()).toContain('Untitled 1 - LibreOffice Calc');
        const chosen = await office.readFile(javaSettings);
        const gone = chosen.replace(/(<location>[^<]*)(<)/, '$1-gone$2');
        await office.writeFile(javaSettings, gone);
        // It takes another one by itself.
        expect(await office.findings(desktop('GNOME'))).toEqual([]);
        expect(await afterJava()).toContain('Untitled 1 - LibreOffice Calc');
        bindNothing('/usr/lib/jvm');
        await office.writeFile(javaSettings, gone);
        expect(await office.findings(desktop('GNOME'))).toEqual(['java-gone']);
        expect(await commandsFor('java-gone', desktop('GNOME'))).toEqual([
            'apt-get install default-jre',
        ]);
        expect(await afterJava()).toContain('JRE is Defective');
        const planted = await office.readFile(javaSettings);
        expect(await office.fix({ check: 'java-gone', repair: 'forget' })).toMatchObject([
            { result: 'repaired' },
        ]);
        expect(await office.findings(desktop('GNOME'))).toEqual([]);
        expect(await office.undo()).toBe('undone');
        expect(await office.readFile(javaSettings)).toBe(planted);
        const fault = { name: 'a Java that is gone', check: 'java-gone' };
        named(fault.name, fault.check, inWindows, 'yes; the command is shown');
        table.note(fault, { undone: 'yes' });
    });

    test('in German without its help asks where to read it', async () => {
        const registry = path.join(install(), 'share/registry');
        fs.rmSync(registry);
        fs.cpSync('/etc/libreoffice/registry', registry, { recursive: true });
        fs.writeFileSync(
            path.join(registry, 'Langpack-de.xcd'),
            '<oor:data xmlns:oor="http://openoffice.org/2001/registry"/>\n',
        );
        const env = { ...desktop('GNOME'), LANG: 'de_DE.UTF-8' };
        const ofMachine = ['hyphenation', 'locale', 'spelling', 'thesaurus'];
        const found = async () =>
            (await office.findings(env)).filter((check) => !ofMachine.includes(check));
        expect(await found()).toEqual(['help']);
        expect(await commandsFor('help', env)).toEqual(['apt-get install libreoffice-help-de']);
        const stdout = await office.session(`
            soffice --writer >/dev/null 2>&1 &
            await 40 'windows | grep -q Untitled'
            xdotool search --onlyvisible --name Untitled windowfocus key F1
            await 15 'windows | grep -q "Help Not Installed"' && echo asked
            pkill -KILL -x soffice.bin`);
        expect(stdout).toMatch(/^asked$/m);
        const shared = path.join(office.hostPath('/tmp'), 'shared');
        fs.cpSync('/usr/share/libreoffice', shared, { recursive: true, verbatimSymlinks: true });
        fs.mkdirSync(path.join(shared, 'help/de'), { recursive: true });
        office.bind(shared, '/usr/share/libreoffice');
        expect(await found()).toEqual([]);
        named('no help in one’s language', 'help', inWindows);
    });

    test('without Base cannot open a database', async () => {
        const isMissing = () =>
            saidBy(
                office,
                'Print #1, IsNull(createUnoService("com.sun.star.sdb.DatabaseContext"))',
            );
        expect(await isMissing()).toBe('False');
        install('libdbalo.so');
        // Asking for it is an error.
        expect(await isMissing()).toBe('');
        await office.writeFile('/home/user/stock.odb', 'a database');
        await office.addItem(recent('file:///home/user/stock.odb'));
        expect(await office.findings(desktop('GNOME'))).toEqual(['base-missing']);
        expect(await commandsFor('base-missing', desktop('GNOME'))).toEqual([
            'apt-get install libreoffice-base',
        ]);
        named('a database without Base', 'base-missing', 'in what it saves or says');
    });

    test('without the import of PDF cannot edit one', async () => {
        await office.fontsFor('DejaVu Sans');
        const edited = async () => {
            const { stdout } = await office.shell(`
                rm -rf edited
                timeout -k 1 60 soffice --headless --infilter=writer_pdf_import \\
                    --convert-to odt --outdir edited text.pdf >/dev/null 2>&1
                ls edited`);
            return stdout.trim();
        };
        expect(await edited()).toBe('text.odt');
        install('libpdfimportlo.so', 'xpdfimport');
        await office.addItem(recent('file:///home/user/text.pdf'));
        expect(await office.findings(desktop('GNOME'))).toEqual(['pdf-import-missing']);
        expect(await commandsFor('pdf-import-missing', desktop('GNOME'))).toEqual([
            'apt-get install libreoffice-draw',
        ]);
        expect(await edited()).toBe('');
        named('a PDF without its import', 'pdf-import-missing', 'in what it saves or says');
    });

    test.each([
        ['calibri', 'Calibri', 'Carlito', 'fonts-crosextra-carlito'],
        ['cambria', 'Cambria', 'Caladea-Regular', 'fonts-crosextra-caladea'],
        ['arial', 'Arial', 'LiberationSans', 'fonts-liberation'],
    ])(
        'without a font like %s has others until it is installed',
        async (name, family, like, deb) => {
            install();
            const fonts = fontsOfRoot();
            const expected = ['fonts-arial', 'fonts-calibri', 'fonts-cambria'];
            const seen = await office.findings(desktop('GNOME'), { withFonts: true });
            expect(seen.sort()).toEqual(expected);
            expect(await commandsFor(`fonts-${name}`, desktop('GNOME'))).toEqual([
                `apt-get install ${deb}`,
            ]);
            expect(await office.fontsFor(family)).not.toContain(like);
            fs.cpSync(withFonts, fonts, { recursive: true });
            expect(await office.findings(desktop('GNOME'), { withFonts: true })).toEqual([]);
            expect(await office.fontsFor(family)).toContain(like);
            named(`no font like ${family}`, `fonts-${name}`, 'in what it saves or says');
        },
    );
});
