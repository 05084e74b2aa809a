import { node } from './items.mjs';
import { profile } from './officeroot.mjs';

const recent = (address) =>
    node(
        "/org.openoffice.Office.Histories/Histories/org.openoffice.Office.Histories:HistoryInfo['PickList']/ItemList",
        address,
        { Title: 'recent' },
    );

/** What only the administrator can install: how it is planted and the command that is shown. */
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
];
