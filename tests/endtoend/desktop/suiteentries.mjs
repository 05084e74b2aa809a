import fs from 'node:fs';
import path from 'node:path';

import { suiteDirectory } from '../paths.mjs';

/** The runnable tree's desktop entries: {file name: text}, naming a suite at that place. */
export function suiteEntries(place = '/suite') {
    const directory = path.join(suiteDirectory, 'desktops');
    const names = fs
        .readdirSync(directory)
        .filter((name) => name.endsWith('.desktop'))
        .sort();
    return Object.fromEntries(
        names.map((name) => [
            name,
            fs.readFileSync(path.join(directory, name), 'utf8').replaceAll(suiteDirectory, place),
        ]),
    );
}

/** Makes the entries known to the desktop of the sandbox, as an installation of the suite does. */
export async function installEntries(root) {
    for (const [name, text] of Object.entries(suiteEntries())) {
        await root.writeFile(`/usr/share/applications/${name}`, text);
    }
}
