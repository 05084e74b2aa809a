import fs from 'node:fs';
import path from 'node:path';

import { REPOSITORY } from '../paths.mjs';

/** The page's English texts. */
export const TEXTS = JSON.parse(
    fs.readFileSync(path.join(REPOSITORY, 'page/src/locales/en.json'), 'utf8'),
);

/** A text with its values filled in. */
export function filled(text, values) {
    return text.replace(/\{(\w+)\}/g, (_, name) => values[name]);
}
