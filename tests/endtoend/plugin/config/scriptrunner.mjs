import { suffixesOf } from '../../../support/documenttypes.mjs';

const withDot = (suffix) => `.${suffix}`;

/** Every document suffix in the order in which the association scripts report them. */
export const suffixesOfTag = {
    shw: suffixesOf.shw.map(withDot),
    tbl: suffixesOf.tbl.map(withDot),
    vyr: suffixesOf.vyr.map(withDot),
};

export const allSuffixes = [...suffixesOfTag.shw, ...suffixesOfTag.tbl, ...suffixesOfTag.vyr];

/** Runs an embedded script as the library does, with bash. */
export function runScript(root, name, args = [], options = {}) {
    return root.run(['bash', `/scripts/${name}`, ...args], options);
}

/** The lines of a text, which must end with a line feed. */
export function lines(text) {
    if (text !== '' && !text.endsWith('\n')) {
        throw new Error(`no line feed at the end of ${JSON.stringify(text)}`);
    }
    return text.split('\n').slice(0, -1);
}
