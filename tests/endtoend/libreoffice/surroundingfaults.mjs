import fs from 'node:fs';
import path from 'node:path';

import { entry, recent } from './items.mjs';
import { opens } from './windowsession.mjs';

const share = '/home/user/team';
const fonts = '/home/user/.local/share/fonts';
const fontLists = '/home/user/.cache/fontconfig';
/** A letter that DejaVu lacks and Liberation has. */
const rareLetter = '\u02ea';
const dejaVu = '/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf';
const liberation = path.join(
    process.env.LIBREOFFICE_FONTS ?? '',
    'truetype/liberation2/LiberationSans-Regular.ttf',
);
const flatpak = '/var/lib/flatpak/app/org.libreoffice.LibreOffice/current/active/files/libreoffice';

/** When a file was written last, in seconds before now. */
function age(host, seconds) {
    const then = Date.now() / 1000 - seconds;
    fs.utimesSync(host, then, then);
}

/** Whether LibreOffice takes the letter from the font that has it. */
const drawsLetter = async (office) =>
    (await office.fontsFor('DejaVu Sans', rareLetter)).includes('LiberationSans');

/** Faults of shares and fonts, see faults.mjs. */
export const surroundingFaults = [
    {
        check: 'recent-unreachable',
        name: 'a recent document on a share that is away',
        plant: async (office) => {
            await office.addHangingShare(share);
            await office.addItem(recent(`file://${share}/plan.odt`));
        },
        works: ({ version }) => version === '1.2',
        window: {
            command: ['soffice', `${share}/plan.odt`],
            patience: 15,
            until: '^plan|^Untitled',
            shows: ({ windows }) => !Object.keys(windows).some((name) => /^plan|\.odt/.test(name)),
            after: { command: ['soffice', '--writer'] },
            works: opens,
        },
    },
    {
        check: 'path-unreachable',
        name: 'a folder for templates on a share that is away',
        plant: async (office) => {
            await office.addHangingShare(share);
            await office.addItem(
                entry(
                    "/org.openoffice.Office.Paths/Paths/org.openoffice.Office.Paths:NamedPath['Template']",
                    'WritePath',
                    `file://${share}/Templates`,
                ),
            );
        },
        works: ({ version }) => version === '1.2',
        window: {
            command: ['soffice', '--impress'],
            patience: 15,
            // Impress hangs before it asks for one.
            until: 'Select a Template',
            shows: ({ windows }) => !('Select a Template' in windows),
            works: ({ windows }) => 'Select a Template' in windows,
        },
    },
    {
        check: 'font-list-stale',
        name: 'a font that was written over in its place',
        area: fontLists,
        plant: async (office) => {
            await office.makeDirectory(fonts);
            const font = office.hostPath(`${fonts}/own.ttf`);
            fs.copyFileSync(dejaVu, font);
            age(office.hostPath(fonts), 7200);
            await office.convert();
            for (const name of await office.list(fontLists)) {
                age(office.hostPath(`${fontLists}/${name}`), 3600);
            }
            fs.writeFileSync(font, fs.readFileSync(liberation));
        },
        shows: async (_, office) => !(await drawsLetter(office)),
        works: async (_, office) => drawsLetter(office),
    },
    {
        // No Flatpak here: what it shows is read from the files that it reads.
        check: 'flatpak-fonts',
        name: 'a Flatpak that does not see fonts',
        area: '/home/user/.local/share/flatpak',
        plant: async (office) => {
            office.smallDisk('/var/lib', 64 * 1024);
            office.moveInstallation(flatpak);
            await office.makeDirectory('/home/user/.local/share');
            await office.writeFile(
                '/home/user/.config/fontconfig/fonts.conf',
                '<?xml version="1.0"?>\n<fontconfig>\n<dir>/srv/fonts</dir>\n</fontconfig>\n',
            );
        },
        seen: 'fonts are missing from the list',
    },
];
