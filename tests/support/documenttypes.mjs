import { readFileSync } from 'node:fs';
import { resolve } from 'node:path';
import { fileURLToPath } from 'node:url';

const build = process.env.SUITE_DIR
    ? resolve(process.env.SUITE_DIR, '..')
    : fileURLToPath(new URL('../../build', import.meta.url));

/**
 * The suffixes of each application's documents, without dots, in the order in which the page lists
 * them. CMake writes them when it configures the build.
 * @type {Record<'shw' | 'tbl' | 'vyr', string[]>}
 */
export const suffixesOf = JSON.parse(readFileSync(resolve(build, 'documenttypes.json'), 'utf8'));
