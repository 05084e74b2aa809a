import path from 'node:path';
import { fileURLToPath } from 'node:url';

/** Top of the source tree. */
export const repository = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');

/** The runnable tree under test; SUITE_DIR names another build's. */
export const suiteDirectory = path.resolve(
    process.env.SUITE_DIR ?? path.join(repository, 'build/suite'),
);

/** The embedded scripts as the build puts them together. */
export const scriptsDirectory = path.join(repository, 'build/plugin/config');
