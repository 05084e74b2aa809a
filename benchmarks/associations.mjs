// How long it takes to say what opens each kind of the suite's documents, among many applications.

import { execFileSync } from 'node:child_process';
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { bounded, median } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';

const rounds = 9;
const entryCount = 500;
const typeCount = 2000;
const longestMs = 30;

function writeApplications(home) {
    const applications = join(home, '.local/share/applications');
    mkdirSync(applications, { recursive: true });
    for (let number = 0; number < entryCount; number++) {
        writeFileSync(
            join(applications, `entry${number}.desktop`),
            `[Desktop Entry]\nType=Application\nName=x\nExec=true %f\nMimeType=type/x${number};\n`,
        );
    }
    const lines = Array.from({ length: typeCount }, (_, number) => {
        const names = [0, 1, 2].map((step) => `entry${(number + step) % entryCount}.desktop;`);
        return `type/x${number}=${names.join('')}\n`;
    });
    writeFileSync(join(applications, 'mimeinfo.cache'), `[MIME Cache]\n${lines.join('')}`);
}

/** @param {{listSuffixes: string}} programs */
export async function associationFigures({ listSuffixes }) {
    return withPrivateHome((env, home) => {
        writeApplications(home);
        const own = { ...env, XDG_CONFIG_HOME: undefined, XDG_DATA_HOME: undefined };
        const times = Array.from({ length: rounds }, () =>
            Number(execFileSync(listSuffixes, { env: own, encoding: 'utf8' })),
        );
        return [bounded('what opens each kind of document', 'ms', median(times), longestMs)];
    });
}
