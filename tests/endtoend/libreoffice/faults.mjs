import fs from 'node:fs';

import { entry, node, textIn } from './items.mjs';
import { profile, settings } from './officeroot.mjs';

const profileRoot = '/home/user/.config/libreoffice/4';
/** Settings of another version that LibreOffice ignores: it saves as it does without any. */
const ignored = ({ version }) => version !== '1.2';
const title = 'Untitled 1 - LibreOffice Writer';
/** As wide as the settings of this home say, or not. */
const isKept = ({ windows }) => windows[title] === 800;
const isForgotten = ({ windows }) => windows[title] > 0 && windows[title] !== 800;
const opens = ({ windows }) => title in windows;
const opensNot = (seen) => !opens(seen);

const text = 'application/vnd.oasis.opendocument.text';

const forNewer = `<?xml version="1.0" encoding="UTF-8"?>
<description xmlns="http://openoffice.org/extensions/description/2006"
 xmlns:l="http://libreoffice.org/extensions/description/2011">
<identifier value="tidy"/><version value="1.0"/>
<dependencies>
<l:LibreOffice-minimal-version value="24.2" name="LibreOffice 24.2"/>
</dependencies></description>
`;

/** Whether LibreOffice refuses an extension for the sake of its own version. */
async function refusesExtension(office) {
    await office.writeFile('/home/user/tidy/description.xml', forNewer);
    await office.writeFile(
        '/home/user/tidy/META-INF/manifest.xml',
        '<manifest:manifest xmlns:manifest="http://openoffice.org/2001/manifest"/>',
    );
    const { stdout, stderr } = await office.shell(
        'cd tidy && zip -qr ../tidy.oxt . && timeout 60 unopkg add ../tidy.oxt; echo "ended: $?"',
    );
    return stderr.includes('unsatisfied dependencies') && stdout.trim() !== 'ended: 0';
}

/** Which of two programs a double-click on a document starts. */
async function opener(office) {
    const { stdout } = await office.shell(`
        gio open plan.odt
        timeout 10 bash -c 'until [ -e writer ] || [ -e archiver ]; do sleep 0.05; done'
        ls writer archiver 2>/dev/null`);
    return stdout.trim();
}

/**
 * What users have: how it is planted, which check names it, and what the real LibreOffice does with
 * it (shows: true for what convert() then gives; window: the same for window(), in a LibreOffice
 * with windows). Where neither shows anything, what users notice stands in "seen". normal: part of
 * each test run.
 */
export const faults = [
    {
        check: 'settings-damaged',
        name: 'settings cut off in the middle, with a good copy',
        normal: true,
        plant: async (office) => {
            const content = await office.readFile(settings);
            fs.writeFileSync(
                office.hostPath(settings),
                content.slice(0, content.indexOf('"DefaultVersion"')),
            );
        },
        shows: ignored,
        works: ({ version }) => version === '1.2',
        window: { shows: isForgotten, works: isKept },
    },
    {
        check: 'settings-damaged',
        name: 'settings with a damaged part, of which the rest is kept',
        repair: 'keep',
        plant: async (office) => {
            const content = await office.readFile(settings);
            fs.writeFileSync(
                office.hostPath(settings),
                content.replace('<value>', '<value><broken '),
            );
        },
        shows: ignored,
        works: ({ version }) => version === '1.2',
        window: { shows: isForgotten, works: isKept },
    },
    {
        check: 'settings-damaged',
        name: 'settings full of zeros, started anew',
        repair: 'aside',
        plant: async (office) => fs.writeFileSync(office.hostPath(settings), Buffer.alloc(4096)),
        works: ({ version }) => version !== null,
        window: { shows: isForgotten, works: opens },
    },
    {
        check: 'settings-read-only',
        name: 'a folder of settings that cannot be changed',
        plant: async (office) => fs.chmodSync(office.hostPath(profile), 0o500),
        works: ({ version }) => version === '1.2',
        window: {
            later: 'grep -q TipOfTheDay "$HOME/.config/libreoffice/4/user/registrymodifications.xcu"',
            shows: ({ content }) => !content.includes('TipOfTheDay'),
            works: ({ content }) => content.includes('TipOfTheDay'),
        },
    },
    {
        check: 'settings-link',
        name: 'settings that lead to a disk that is gone',
        normal: true,
        plant: async (office) => {
            fs.rmSync(office.hostPath(profileRoot), { recursive: true });
            fs.symlinkSync('/mnt/gone/libreoffice', office.hostPath(profileRoot));
        },
        patience: 3,
        shows: ({ version }) => version === null,
        works: ({ version }) => version !== null,
        window: { patience: 15, shows: opensNot, works: opens },
    },
    {
        check: 'settings-locked',
        name: 'a lock with the former name of the computer',
        normal: true,
        plant: (office) =>
            office.writeFile(
                `${profileRoot}/.lock`,
                '[Lockdata]\nUser=user\nHost=formername\nStamp=1\nTime=today\nIPCServer=true\n',
            ),
        works: ({ version }) => version === '1.2',
        window: { until: '^(LibreOffice 7|Untitled)', shows: opensNot, works: opens },
    },
    {
        check: 'newer-settings',
        name: 'settings of a newer LibreOffice',
        plant: async (office) => {
            await office.addItem(
                entry('/org.openoffice.Setup/Product', 'ooSetupLastVersion', '24.8'),
            );
            await office.addItem(
                entry('/org.openoffice.Office.Common/Misc', 'FutureThing', 'true'),
            );
        },
        works: ({ version }) => version !== null,
        window: {
            later: 'grep -q TipOfTheDay "$HOME/.config/libreoffice/4/user/registrymodifications.xcu"',
            shows: ({ content }) => !content.includes('FutureThing'),
            works: opens,
        },
    },
    {
        check: 'interface-language',
        name: 'a language that is not installed',
        plant: (office) =>
            office.addItem(entry('/org.openoffice.Office.Linguistic/General', 'UILocale', 'de')),
        seen: 'windows are in English',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'recovery-missing',
        name: 'a document to recover that is gone',
        normal: true,
        plant: (office) =>
            office.addItem(
                node('/org.openoffice.Office.Recovery/RecoveryList', 'recovery_item_1', {
                    Title: 'gone.odt',
                    Filter: 'writer8',
                    Module: 'com.sun.star.text.TextDocument',
                    TempURL: `file://${profile}/backup/gone.odt_0.odt`,
                    ViewNames: '',
                    OriginalURL: 'file:///home/user/gone.odt',
                    TemplateURL: '',
                    DocumentState: 1,
                }),
            ),
        works: ({ version }) => version === '1.2',
        window: {
            until: 'Document Recovery|^Untitled',
            shows: ({ windows }) =>
                Object.keys(windows).some((name) => name.endsWith('Document Recovery')),
            works: opens,
        },
    },
    {
        check: 'path-missing',
        name: 'a folder for documents that is gone',
        plant: (office) =>
            office.addItem(
                entry(
                    "/org.openoffice.Office.Paths/Paths/org.openoffice.Office.Paths:NamedPath['Work']",
                    'WritePath',
                    'file:///home/user/Gone',
                ),
            ),
        seen: 'dialogs for files begin elsewhere',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'replacement-font',
        name: 'a replacement by a font that is gone',
        plant: async (office) => {
            const table = '/org.openoffice.Office.Common/Font/Substitution';
            await office.addItem(entry(table, 'Replacement', 'true'));
            await office.addItem(
                node(`${table}/FontPairs`, '_0', {
                    Always: 'true',
                    OnScreenOnly: 'false',
                    ReplaceFont: 'DejaVu Serif',
                    SubstituteFont: 'Nosuch Sans',
                }),
            );
        },
        seen: 'the replacement is not made',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'opencl',
        name: 'OpenCL without a driver',
        plant: (office) =>
            office.addItem(entry('/org.openoffice.Office.Common/Misc', 'UseOpenCL', 'true')),
        seen: 'calculations are slow or fail',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'java-gone',
        name: 'a Java that is gone',
        plant: (office) =>
            office.writeFile(
                `${profile}/config/javasettings_Linux_X86_64.xml`,
                `<?xml version="1.0" encoding="UTF-8"?>
<java xmlns="http://openoffice.org/2004/java/framework/1.0" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<enabled xsi:nil="false">true</enabled>
<javaInfo xsi:nil="false" vendorUpdate="2019-05-02" autoSelect="false">
<vendor>Debian</vendor>
<location>file:///usr/lib/jvm/java-0-gone</location>
<version>17.0.1</version>
</javaInfo>
</java>
`,
            ),
        seen: 'Base asks for a Java',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'extensions-damaged',
        name: 'a damaged list of extensions',
        plant: (office) =>
            office.writeFile(
                `${profile}/extensions/bundled/registry/com.sun.star.comp.deployment.help.PackageRegistryBackend/backenddb.xml`,
                '<?xml version="1.0"?>\n<ext:help-backend-db xmlns:ext="x">\n<ext:ent',
            ),
        works: ({ version }) => version === '1.2',
        window: { shows: ({ ended, windows }) => ended && opensNot({ windows }), works: opens },
    },
    {
        check: 'document-locked',
        name: 'a document that is marked as open',
        normal: true,
        area: '/home/user/Documents',
        plant: async (office) => {
            await office.writeFile('/home/user/Documents/plan.fodt', textIn('DejaVu Sans'));
            await office.writeFile(
                '/home/user/Documents/.~lock.plan.fodt#',
                ',user,sandbox,22.11.2026 14:01,file:///home/user/.config/libreoffice/4;',
            );
        },
        works: ({ version }) => version === '1.2',
        window: {
            command: [
                'soffice',
                '-env:UserInstallation=file:///tmp/other',
                '/home/user/Documents/plan.fodt',
            ],
            until: 'Document in Use|^plan',
            shows: ({ windows }) => 'Document in Use' in windows,
            works: ({ windows }) => 'plan.fodt - LibreOffice Writer' in windows,
        },
    },
    {
        check: 'window-plugin',
        name: 'a window plug-in that is not installed',
        area: '/home/user/.profile',
        plant: (office) =>
            office.writeFile('/home/user/.profile', 'umask 022\nexport SAL_USE_VCLPLUGIN=kde4\n'),
        seen: 'windows look foreign',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'preload',
        name: 'a library to be loaded first that is gone',
        area: '/home/user/.profile',
        env: { LD_PRELOAD: '/opt/gone/libfix.so' },
        plant: (office) =>
            office.writeFile('/home/user/.profile', 'export LD_PRELOAD=/opt/gone/libfix.so\n'),
        shows: ({ stderr }) => stderr.includes('/opt/gone/libfix.so'),
        works: ({ stderr }) => !stderr.includes('/opt/gone/libfix.so'),
    },
    {
        check: 'library-path',
        name: 'a library that is loaded instead of LibreOffice’s own',
        area: '/home/user/.profile',
        env: { LD_LIBRARY_PATH: '/home/user/lib' },
        plant: async (office) => {
            await office.writeFile('/home/user/lib/libxml2.so.2', 'no library');
            await office.writeFile(
                '/home/user/.profile',
                'export LD_LIBRARY_PATH=/home/user/lib\n',
            );
        },
        shows: ({ version }) => version === null,
        works: ({ version }) => version === '1.2',
        window: { shows: ({ ended, windows }) => ended && opensNot({ windows }), works: opens },
    },
    {
        check: 'settings-large',
        name: 'settings that have grown',
        plant: (office) =>
            office.addItem(
                entry('/org.openoffice.Office.Common/Misc', 'Grown', 'x'.repeat(1200)).repeat(9000),
            ),
        seen: 'LibreOffice starts slowly',
        works: ({ version }) => version !== null,
    },
    {
        check: 'temp-missing',
        name: 'a folder for temporary files that is gone',
        area: '/home/user/tmp',
        session: { TMPDIR: '/home/user/tmp' },
        plant: async () => {},
        seen: 'temporary files go to /tmp',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'extension-newer',
        name: 'an extension for a newer LibreOffice',
        byHand: true,
        plant: (office) =>
            office.writeFile(
                `${profile}/uno_packages/cache/uno_packages/lu1_/tidy.oxt/description.xml`,
                forNewer,
            ),
        shows: (_, office) => refusesExtension(office),
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'print-server',
        name: 'a print server that does not answer',
        area: '/home/user/.cups',
        plant: (office) =>
            office.writeFile('/home/user/.cups/client.conf', 'ServerName 127.0.0.2\n'),
        seen: 'the print dialog opens late',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'opened-by-archiver',
        name: 'documents that an archive manager opens',
        area: '/home/user/.config/mimeapps.list',
        plant: async (office) => {
            const folder = '/usr/share/applications';
            const program = (name, command) =>
                `[Desktop Entry]\nType=Application\nName=${name}\nExec=${command} %U\nMimeType=${text};\n`;
            await office.writeFile(
                `${folder}/libreoffice-writer.desktop`,
                program('Writer', 'touch /home/user/writer'),
            );
            await office.writeFile(
                `${folder}/org.gnome.FileRoller.desktop`,
                program('Archives', 'touch /home/user/archiver'),
            );
            await office.writeFile(
                '/home/user/.config/mimeapps.list',
                `[Default Applications]\n${text}=org.gnome.FileRoller.desktop\n`,
            );
            await office.writeFile('/home/user/plan.odt', 'A plan.');
        },
        shows: async (_, office) => (await opener(office)) === 'archiver',
        works: async (_, office) => (await opener(office)) === 'writer',
    },
    {
        // No Flatpak here: its restriction is read from the file that it reads.
        check: 'flatpak-documents',
        name: 'a Flatpak that may not see documents',
        area: '/home/user/.local/share/flatpak',
        plant: async (office) => {
            office.smallDisk('/var/lib', 64 * 1024);
            office.moveInstallation(
                '/var/lib/flatpak/app/org.libreoffice.LibreOffice/current/active/files/libreoffice',
            );
            await office.writeFile(
                '/home/user/.local/share/flatpak/overrides/org.libreoffice.LibreOffice',
                '[Context]\nfilesystems=!home;xdg-pictures\n',
            );
        },
    },
];
