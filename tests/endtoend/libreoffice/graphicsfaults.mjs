import fs from 'node:fs';

import { entry } from './items.mjs';
import { settings } from './officeroot.mjs';
import { opens } from './windowsession.mjs';

const skiaLog = '/home/user/.config/libreoffice/4/cache/skia.log';
/** What draws, as LibreOffice says it. */
const skiaIn = (office) => fs.readFileSync(office.hostPath(skiaLog), 'utf8').split('\n')[0];

/** Whether LibreOffice is set to calculate with OpenCL. */
async function openCl(office) {
    const content = await office.readFile(settings);
    return content.match(/"UseOpenCL"[^>]*><value>(\w+)/)?.[1];
}

/** Faults of what draws and calculates, see faults.mjs. */
export const graphicsFaults = [
    {
        check: 'opencl',
        name: 'OpenCL without a driver',
        plant: (office) =>
            office.addItem(entry('/org.openoffice.Office.Common/Misc', 'UseOpenCL', 'true')),
        // It finds none, and switches OpenCL off by itself.
        shows: async (_, office) => (await openCl(office)) === 'false',
        works: ({ version }) => version === '1.2',
    },
    {
        check: 'skia',
        name: 'Skia without a driver for Vulkan',
        session: { SAL_USE_VCLPLUGIN: 'gen' },
        plant: async (office) => {
            // What LibreOffice writes when it takes Skia.
            await office.writeFile(skiaLog, 'planted\n');
            await office.addItem(entry('/org.openoffice.Office.Common/VCL', 'UseSkia', 'true'));
        },
        works: ({ version }) => version === '1.2',
        window: {
            later: `grep -q . "${skiaLog}"`,
            shows: (_, office) => skiaIn(office) === 'RenderMethod: raster',
            works: (seen, office) => opens(seen) && skiaIn(office) === 'planted',
        },
    },
    {
        check: 'skia-variable',
        name: 'a line that has LibreOffice draw with Skia',
        area: '/home/user/.profile',
        session: { SAL_USE_VCLPLUGIN: 'gen' },
        env: { SAL_ENABLESKIA: '1' },
        plant: async (office) => {
            await office.writeFile('/home/user/.profile', 'export SAL_ENABLESKIA=1\n');
            await office.addItem(entry('/org.openoffice.Office.Common/VCL', 'UseSkia', 'false'));
            await office.writeFile(skiaLog, 'planted\n');
        },
        works: ({ version }) => version === '1.2',
        window: {
            later: `grep -q RenderMethod "${skiaLog}"`,
            shows: (_, office) => skiaIn(office) === 'RenderMethod: raster',
            works: (seen, office) => opens(seen) && skiaIn(office) === 'planted',
        },
    },
];
