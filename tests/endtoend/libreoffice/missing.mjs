import { recent } from './items.mjs';
import { profile } from './officeroot.mjs';

const profileRoot = '/home/user/.config/libreoffice/4';

/**
 * What only the administrator can change: how it is planted, the command that is shown, and what
 * the real LibreOffice does with it where one without windows shows it.
 */
export const missing = [
    {
        name: 'a formula without Math',
        plant: async (office) => {
            await office.writeFile('/home/user/area.odf', 'no formula');
            await office.addItem(recent('file:///home/user/area.odf'));
        },
        findings: { 'math-missing': 'apt-get install libreoffice-math' },
    },
    {
        name: 'a macro without Python',
        plant: (office) =>
            office.writeFile(`${profile}/Scripts/python/tidy.py`, 'def tidy():\n    pass\n'),
        findings: { 'python-missing': 'apt-get install libreoffice-script-provider-python' },
    },
    {
        name: 'a document on a server without GVFS',
        plant: (office) => office.addItem(recent('smb://server/share/plan.odt')),
        findings: { 'remote-missing': 'apt-get install gvfs-backends' },
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
    },
    {
        name: 'a desktop with a LibreOffice that has no windows',
        env: { DISPLAY: ':9' },
        plant: async () => {},
        findings: { 'no-windows': 'apt-get install libreoffice-gtk3' },
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
    // their places, so LibreOffice itself shows nothing. A share whose server is away cannot be
    // mounted here; tests/doctor/fixtures has it as a table of mounts.
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
];
