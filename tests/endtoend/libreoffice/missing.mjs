import fs from 'node:fs';
import path from 'node:path';

import { recent } from './items.mjs';
import { saidBy } from './macro.mjs';
import { profile, settings } from './officeroot.mjs';
import { opens, opensNot } from './windowsession.mjs';

const someoneElse = 4711;
const fontLists = '/home/user/.cache/fontconfig';
const profileRoot = '/home/user/.config/libreoffice/4';

const javaParts = `<?xml version="1.0" encoding="UTF-8"?>
<manifest:manifest xmlns:manifest="http://openoffice.org/2001/manifest">
<manifest:file-entry manifest:media-type="application/vnd.sun.star.uno-component;type=Java"
 manifest:full-path="tidy.jar"/>
</manifest:manifest>
`;

/** Whether LibreOffice refuses an extension because it finds no Java. */
async function lacksJava(office) {
    await office.writeFile('/home/user/tidy/META-INF/manifest.xml', javaParts);
    const { stdout, stderr } = await office.shell(`cd tidy
        python3 -m zipfile -c tidy.jar META-INF && python3 -m zipfile -c ../tidy.oxt META-INF tidy.jar
        timeout 60 unopkg add ../tidy.oxt; echo "ended: $?"`);
    return /[Jj]ava/.test(stderr) && stdout.trim() !== 'ended: 0';
}

/**
 * What only the administrator can change: how it is planted, the command that is shown, and what
 * the real LibreOffice does with it: one without windows (shows), or with windows (window), but
 * for what is plain.
 *
 * @typedef {import('./officeroot.mjs').OfficeRoot} Office
 * @type {{
 *     name: string,
 *     env?: Record<string, string>,
 *     plant: (office: Office) => unknown,
 *     findings: Record<string, string | null>,
 *     shows?: (converted: { version: string | null }, office: Office) => unknown,
 *     patience?: number,
 *     window?: {
 *         isPlain?: boolean,
 *         patience?: number,
 *         shows: (seen: { windows: Record<string, number> }) => boolean,
 *     },
 * }[]}
 */
export const missing = [
    {
        name: 'a formula without Math',
        plant: async (office) => {
            await office.writeFile(
                '/home/user/area.mml',
                '<math xmlns="http://www.w3.org/1998/Math/MathML"><mi>x</mi></math>\n',
            );
            await office.addItem(recent('file:///home/user/area.mml'));
        },
        findings: { 'math-missing': 'apt-get install libreoffice-math' },
        // It takes the formula for a text.
        shows: async (_, office) => {
            const { stdout } = await office.shell(
                'timeout 60 soffice --headless --convert-to pdf area.mml',
            );
            return stdout.includes('writer_pdf_Export');
        },
    },
    {
        name: 'an extension without Java',
        plant: async (office) => {
            const nothing = path.join(office.hostPath('/tmp'), 'nojava');
            fs.mkdirSync(nothing);
            office.bind(nothing, '/usr/lib/jvm');
            const cache = `${profile}/uno_packages/cache/uno_packages/lu1_/tidy.oxt`;
            await office.writeFile(`${cache}/META-INF/manifest.xml`, javaParts);
        },
        findings: { 'java-missing': 'apt-get install default-jre' },
        shows: (_, office) => lacksJava(office),
    },
    {
        name: 'a macro without Python',
        plant: (office) =>
            office.writeFile(
                `${profile}/Scripts/python/tidy.py`,
                "def tidy():\n    open('ran', 'w').close()\n",
            ),
        findings: { 'python-missing': 'apt-get install libreoffice-script-provider-python' },
        shows: async (_, office) => {
            const { stdout } = await office.shell(`
                timeout 60 soffice --headless \
                    'vnd.sun.star.script:tidy.py$tidy?language=Python&location=user'
                echo "ended: $?"`);
            return stdout !== 'ended: 0\n' && !(await office.exists('/home/user/ran'));
        },
    },
    {
        name: 'a document on a server without GVFS',
        plant: (office) => office.addItem(recent('smb://server/share/plan.odt')),
        findings: { 'remote-missing': 'apt-get install gvfs-backends' },
        // It knows nothing that could open such an address.
        shows: async (_, office) =>
            (await saidBy(
                office,
                `broker = createUnoService("com.sun.star.ucb.UniversalContentBroker")
                Print #1, IsNull(broker.queryContentProvider("file:///home/user/plan.odt"))
                Print #1, IsNull(broker.queryContentProvider("smb://server/share/plan.odt"))`,
            )) === 'False\nTrue',
    },
    {
        name: 'a session in German',
        env: { LANG: 'de_AT.UTF-8' },
        plant: async () => {},
        findings: {
            hyphenation: 'apt-get install hyphen-de',
            'language-pack': 'apt-get install libreoffice-l10n-de',
            locale: null,
            spelling: 'apt-get install hunspell-de-at',
            thesaurus: 'apt-get install mythes-de',
        },
        window: { shows: opens },
    },
    {
        name: 'a desktop with a LibreOffice that has no windows',
        env: { DISPLAY: ':9' },
        plant: async () => {},
        findings: { 'no-windows': 'apt-get install libreoffice-gtk3' },
        window: { isPlain: true, patience: 15, shows: opensNot },
    },
    {
        name: 'a full disk below the settings',
        plant: (office) => office.smallDisk(profile, 64 * 1024),
        findings: { 'disk-full': null },
        shows: ({ version }) => version === null,
        patience: 10,
    },
    {
        name: 'a read-only file system below the settings',
        plant: async (office) => office.makeReadOnly(profileRoot),
        findings: { 'disk-read-only': `mount -o remount,rw ${profileRoot}` },
        shows: ({ version }) => version === null,
        patience: 10,
    },
    // Test machines have neither AppArmor nor Snap: the files that their checks read are planted in
    // their places, so LibreOffice itself shows nothing.
    {
        name: 'AppArmor around LibreOffice',
        plant: async (office) => {
            office.smallDisk('/sys/module', 64 * 1024);
            await office.bindFile('/sys/module/apparmor/parameters/enabled', 'Y\n');
            await office.bindFile(
                '/etc/apparmor.d/usr.lib.libreoffice.program.soffice.bin',
                'profile libreoffice-soffice /usr/lib/libreoffice/program/soffice.bin {\n}\n',
            );
            await office.addItem(recent('file:///srv/plan.odt'));
        },
        findings: { apparmor: 'aa-complain /usr/lib/libreoffice/program/soffice.bin' },
    },
    {
        name: 'LibreOffice from Snap without drives',
        plant: async (office) => {
            office.moveInstallation('/snap/libreoffice/current/lib/libreoffice');
            office.smallDisk('/var/lib', 64 * 1024);
            await office.bindFile(
                '/var/lib/snapd/apparmor/profiles/snap.libreoffice.writer',
                'profile "snap.libreoffice.writer" {\n}\n',
            );
            office.smallDisk('/media/stick', 64 * 1024);
        },
        findings: { 'snap-documents': 'snap connect libreoffice:removable-media' },
    },
    {
        name: 'settings that belong to somebody else',
        plant: async (office) => {
            // Nobody's in the root, which knows one user; only the administrator can plant it.
            fs.chmodSync(office.hostPath(settings), 0o600);
            fs.chownSync(office.hostPath(settings), someoneElse, someoneElse);
        },
        findings: { 'settings-foreign': `chown 1000:1000 -- ${settings}` },
        shows: ({ version }) => version !== '1.2',
    },
    {
        name: 'old copies of settings',
        plant: async (office) => {
            for (const name of ['4.bak', '4.old', '4.orig', '4_backup2']) {
                await office.makeDirectory(`/home/user/.config/libreoffice/${name}/user`);
            }
        },
        findings: { 'old-copies': null },
    },
    {
        name: 'two installations with the same settings',
        plant: async (office) => office.addInstallation('/opt/libreoffice24.8', '24.8'),
        findings: { 'shared-settings': null },
        shows: async (_, office) => {
            fs.rmSync(office.hostPath(settings));
            await office.shell(
                '/opt/libreoffice24.8/program/soffice --headless --convert-to fodt --outdir out plan.txt',
            );
            return office.exists(settings);
        },
    },
    {
        name: 'a desktop that does not know office documents',
        plant: async (office) => {
            const types = path.join(office.hostPath('/tmp'), 'types');
            fs.mkdirSync(types);
            office.bind(types, '/usr/share/mime');
            await office.writeFile('/home/user/plan.odt', 'PK');
        },
        findings: { 'types-unknown': 'update-mime-database /usr/share/mime' },
        shows: async (_, office) => {
            const { stdout } = await office.shell('gio info -a standard::content-type plan.odt');
            return !stdout.includes('opendocument');
        },
    },
    {
        name: 'a list of fonts that belongs to somebody else',
        plant: async (office) => {
            await office.makeDirectory('/home/user/.local/share/fonts');
            fs.copyFileSync(
                '/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf',
                office.hostPath('/home/user/.local/share/fonts/own.ttf'),
            );
            for (const place of [fontLists, '/home/user/.fontconfig']) {
                await office.makeDirectory(place);
                fs.chownSync(office.hostPath(place), someoneElse, someoneElse);
            }
        },
        findings: { 'font-cache': `chown 1000:1000 -- ${fontLists}` },
        // The next start reads all fonts of this home again.
        shows: async (_, office) => {
            const before = await office.list(fontLists);
            fs.chownSync(office.hostPath(fontLists), process.getuid(), process.getgid());
            await office.convert();
            return before.length === 0 && (await office.list(fontLists)).length > 0;
        },
    },
];
