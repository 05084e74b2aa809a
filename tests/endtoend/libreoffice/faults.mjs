import fs from 'node:fs';

import { graphicsFaults } from './graphicsfaults.mjs';
import { entry, node, recent, textIn } from './items.mjs';
import { saidBy, workOf } from './macro.mjs';
import { profile, settings } from './officeroot.mjs';
import { sessionFaults } from './sessionfaults.mjs';
import { surroundingFaults } from './surroundingfaults.mjs';
import { opens, opensNot, textDocument } from './windowsession.mjs';

const missingFont = 'Nosuch Sans';
const profileRoot = '/home/user/.config/libreoffice/4';
const helpParts = `${profile}/extensions/bundled/registry/com.sun.star.comp.deployment.help.PackageRegistryBackend/backenddb.xml`;
/** As LibreOffice writes it, of 18 MB. */
const grownList = `<?xml version="1.0"?>
<help:help-backend-db xmlns:help="http://openoffice.org/extensionmanager/help-registry/2010">
${Array.from(
    { length: 100_000 },
    (_, number) =>
        `<help:help url="vnd.sun.star.expand:$BUNDLED_EXTENSIONS/words-${number}"><help:data-url>vnd.sun.star.expand:$BUNDLED_EXTENSIONS_USER/registry/help/${number}.tmp/words</help:data-url></help:help>`,
).join('\n')}
</help:help-backend-db>
`;
const convertPlan = 'soffice --headless --convert-to fodt --outdir out plan.txt';
/** Whether LibreOffice replaces a font, after its replacement was changed to another font. */
async function isReplaced(office, replacement = missingFont) {
    const content = await office.readFile(settings);
    fs.writeFileSync(office.hostPath(settings), content.replace(missingFont, replacement));
    return (await office.fontsFor('DejaVu Serif')).join() !== 'DejaVuSerif';
}
/** Settings of another version that LibreOffice ignores: it saves as it does without any. */
const ignored = ({ version }) => version !== '1.2';
const paths = 'createUnoService("com.sun.star.util.PathSettings")';
const goneFolder = 'file:///home/user/Gone';
/** Has LibreOffice itself write down which folder it is to use. */
const setsFolder = (name) => (office) =>
    saidBy(office, `${paths}.${name}_writable = "${goneFolder}"`);
const usesFolder = (name, folder) => async (_, office) =>
    (await saidBy(office, `Print #1, ${paths}.${name}_writable`)) === folder;
/** Whether a command takes the processor notably longer than without a file. */
async function isSlowedBy(office, file, command) {
    const slow = await workOf(office, command);
    fs.rmSync(office.hostPath(file));
    return slow > 1.3 * (await workOf(office, command));
}
/** As wide as the settings of this home say, or not. */
const isKept = ({ windows }) => windows[textDocument] === 800;
const isForgotten = ({ windows }) => windows[textDocument] > 0 && windows[textDocument] !== 800;

/** A document to recover, in that state. */
const recovery = (name, state) =>
    node('/org.openoffice.Office.Recovery/RecoveryList', 'recovery_item_1', {
        Title: name,
        Filter: 'OpenDocument Text Flat XML',
        Module: 'com.sun.star.text.TextDocument',
        TempURL: `file://${profile}/backup/${name}_0.fodt`,
        ViewNames: '',
        OriginalURL: `file:///home/user/${name}`,
        TemplateURL: '',
        DocumentState: state,
    });
const wasChanged = 1;
const triesCopy = 16;
const asksToRecover = {
    until: 'Document Recovery|^Untitled',
    shows: ({ windows }) => Object.keys(windows).some((name) => name.endsWith('Document Recovery')),
    works: opens,
};

/**
 * What users have: how it is planted, which check names it, and what the real LibreOffice does with
 * it (shows: true for what convert() then gives; window: the same for window(), in a LibreOffice
 * with windows; after: what is done otherwise once it is repaired). Where neither shows anything,
 * what users notice stands in "seen". normal: part of each test run.
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
        works: ({ version }) => version === '1.2',
        // They are in English.
        window: { shows: opens, works: opens },
    },
    {
        check: 'recovery-missing',
        name: 'a document to recover that is gone',
        normal: true,
        plant: (office) => office.addItem(recovery('gone.fodt', wasChanged)),
        works: ({ version }) => version === '1.2',
        window: asksToRecover,
    },
    {
        check: 'recovery-loop',
        name: 'a document whose recovery has ended LibreOffice',
        plant: async (office) => {
            await office.writeFile('/home/user/plan.fodt', textIn('DejaVu Sans'));
            await office.writeFile(`${profile}/backup/plan.fodt_0.fodt`, textIn('DejaVu Sans'));
            // What LibreOffice leaves that is killed while it reads the copy.
            await office.addItem(recovery('plan.fodt', wasChanged + triesCopy));
        },
        works: ({ version }) => version === '1.2',
        window: asksToRecover,
    },
    {
        check: 'path-missing',
        name: 'a folder for templates that is gone',
        plant: setsFolder('Template'),
        shows: usesFolder('Template', goneFolder),
        works: usesFolder('Template', `file://${profile}/template`),
    },
    {
        check: 'path-missing',
        name: 'a folder for documents that is gone',
        plant: setsFolder('Work'),
        shows: usesFolder('Work', goneFolder),
        works: usesFolder('Work', 'file:///home/user'),
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
                    SubstituteFont: missingFont,
                }),
            );
        },
        shows: async (_, office) =>
            !(await isReplaced(office)) && (await isReplaced(office, 'DejaVu Sans')),
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'extensions-damaged',
        name: 'a damaged list of extensions',
        normal: true,
        plant: (office) =>
            office.writeFile(
                helpParts,
                '<?xml version="1.0"?>\n<ext:help-backend-db xmlns:ext="x">\n<ext:ent',
            ),
        works: ({ version }) => version === '1.2',
        window: { shows: ({ ended, windows }) => ended && opensNot({ windows }), works: opens },
    },
    {
        check: 'extensions-large',
        name: 'a list of extensions that has grown',
        plant: (office) => office.writeFile(helpParts, grownList),
        shows: (_, office) => isSlowedBy(office, helpParts, 'unopkg list --bundled'),
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'settings-large',
        name: 'settings that have grown',
        plant: (office) =>
            office.addItem(
                Array.from({ length: 40_000 }, (_, number) =>
                    recent(`file:///home/user/${'letters/'.repeat(20)}${number}.odt`),
                ).join(''),
            ),
        shows: (_, office) => isSlowedBy(office, settings, convertPlan),
        works: ({ version }) => version !== null,
    },
    ...graphicsFaults,
    ...sessionFaults,
    ...surroundingFaults,
];
