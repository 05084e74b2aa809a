import { textIn } from './items.mjs';
import { saidBy } from './macro.mjs';
import { profile } from './officeroot.mjs';
import { opens, opensNot } from './windowsession.mjs';

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
        'cd tidy && python3 -m zipfile -c ../tidy.oxt META-INF description.xml && timeout 60 unopkg add ../tidy.oxt; echo "ended: $?"',
    );
    return stderr.includes('unsatisfied dependencies') && stdout.trim() !== 'ended: 0';
}

const inOwnFolder = { TMPDIR: '/home/user/tmp' };
/** Whether LibreOffice makes a temporary file in the folder that the session names. */
async function makesTemporaryFile(office) {
    const file = await saidBy(
        office,
        'Print #1, createUnoService("com.sun.star.io.TempFile").Uri',
        inOwnFolder,
    );
    return file?.startsWith('file:///home/user/tmp/') ?? false;
}

/** Which of two programs a double-click on a document starts. */
async function opener(office) {
    const { stdout } = await office.shell(`
        gio open plan.odt
        timeout 10 bash -c 'until [ -e writer ] || [ -e archiver ]; do sleep 0.05; done'
        ls writer archiver 2>/dev/null`);
    return stdout.trim();
}

/** Faults around LibreOffice's profile, see faults.mjs. */
export const sessionFaults = [
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
        env: { SAL_USE_VCLPLUGIN: 'kde4' },
        works: ({ version }) => version === '1.2',
        window: {
            // It takes another one.
            shows: ({ plugins }) => plugins.join() === 'gtk3',
            works: opens,
        },
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
        check: 'temp-missing',
        name: 'a folder for temporary files that is gone',
        area: '/home/user/tmp',
        session: inOwnFolder,
        plant: async () => {},
        // It makes the folder by itself, which others do not.
        shows: async (_, office) => office.exists(inOwnFolder.TMPDIR),
        works: async (_, office) => makesTemporaryFile(office),
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
        // Seen in printers.test.mjs.
        isSeenElsewhere: true,
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'opened-by-archiver',
        name: 'documents that an archive manager opens',
        normal: true,
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
        normal: true,
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
