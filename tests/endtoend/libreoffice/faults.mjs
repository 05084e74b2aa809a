import fs from 'node:fs';

import { entry, node } from './items.mjs';
import { profile, settings } from './officeroot.mjs';

const profileRoot = '/home/user/.config/libreoffice/4';
/** Settings of another version that LibreOffice ignores: it saves as it does without any. */
const ignored = ({ version }) => version !== '1.2';

/**
 * What users have: how it is planted, which check names it, and what the real LibreOffice does with
 * it (shows: true for what convert() then gives). Where one without windows shows nothing, what a
 * window would show stands in "seen". normal: part of each test run.
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
    },
    {
        check: 'settings-damaged',
        name: 'settings full of zeros, started anew',
        repair: 'aside',
        plant: async (office) => fs.writeFileSync(office.hostPath(settings), Buffer.alloc(4096)),
        seen: 'LibreOffice throws the settings away at its next start',
        works: ({ version }) => version !== null,
    },
    {
        check: 'settings-read-only',
        name: 'a folder of settings that cannot be changed',
        plant: async (office) => fs.chmodSync(office.hostPath(profile), 0o500),
        seen: 'what is set is lost at the end',
        works: ({ version }) => version === '1.2',
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
        seen: 'a window asks whether to use the settings all the same',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'newer-settings',
        name: 'settings of a newer LibreOffice',
        plant: (office) =>
            office.addItem(entry('/org.openoffice.Setup/Product', 'ooSetupLastVersion', '24.8')),
        seen: 'settings that this version does not know are lost',
        works: ({ version }) => version !== null,
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
                    DocumentState: 9,
                    OriginalURL: 'file:///home/user/gone.odt',
                    TempURL: `file://${profile}/backup/gone.odt_0.odt`,
                }),
            ),
        seen: 'a window asks to recover it at each start',
        works: ({ version }) => version === '1.2',
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
                    ReplaceFont: 'Arial',
                    SubstituteFont: 'Nosuch Sans',
                }),
            );
        },
        seen: 'text in Arial has whichever font comes first',
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
        seen: 'the extension manager fails or shows nothing',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'document-locked',
        name: 'a document that is marked as open',
        normal: true,
        area: '/home/user/Documents',
        plant: (office) =>
            office.writeFile(
                '/home/user/Documents/.~lock.plan.odt#',
                ',user,sandbox,22.11.2026 14:01,file:///home/user/.config/libreoffice/4;',
            ),
        seen: 'others may only read it',
        works: ({ version }) => version === '1.2',
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
                '<description xmlns:l="http://libreoffice.org/extensions/description/2011">\n<l:LibreOffice-minimal-version value="24.2"/>\n</description>\n',
            ),
        seen: 'the extension manager refuses it',
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
];
