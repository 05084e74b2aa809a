import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

/** Top of the source tree. */
export const repository = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');

/** The runnable tree under test; SUITE_DIR names another build's. */
export const suiteDirectory = path.resolve(
    process.env.SUITE_DIR ?? path.join(repository, 'build/suite'),
);

const scriptsOfTree = path.join(suiteDirectory, '../plugin/config');

/** The embedded scripts as the tree's build, or the usual one, puts them together. */
export const scriptsDirectory = fs.existsSync(scriptsOfTree)
    ? scriptsOfTree
    : path.join(repository, 'build/plugin/config');
