import { SCRIPTS } from '../../paths.mjs';

/** Every document suffix in the order in which the association scripts report them. */
export const SUFFIXES = {
    shw: [
        '.pptx',
        '.ppt',
        '.pptm',
        '.pps',
        '.pot',
        '.potm',
        '.potx',
        '.ppsx',
        '.shd',
        '.shdx',
        '.sht',
        '.shtx',
        '.shds',
        '.shdo',
    ],
    tbl: [
        '.xlsx',
        '.xls',
        '.xlsm',
        '.xlt',
        '.xltm',
        '.xltx',
        '.tbl',
        '.tblx',
        '.tbt',
        '.tbtx',
        '.tbls',
        '.tblo',
    ],
    vyr: [
        '.docx',
        '.docm',
        '.doc',
        '.dot',
        '.dotm',
        '.dotx',
        '.vyr',
        '.vyrx',
        '.vyrs',
        '.vyro',
        '.vyt',
        '.vytx',
        '.rtf',
    ],
};

export const ALL_SUFFIXES = [...SUFFIXES.shw, ...SUFFIXES.tbl, ...SUFFIXES.vyr];

/** Folder of the embedded scripts on the host. */
export const SCRIPT_FOLDER = SCRIPTS;

/** Runs an embedded script as the library does, with bash. */
export function runScript(root, name, args = [], options = {}) {
    return root.run(['bash', `/scripts/${name}`, ...args], options);
}

/** Lines of a text that ends with a line feed. */
export function lines(text) {
    if (text !== '' && !text.endsWith('\n'))
        throw new Error(`no line feed at the end of ${JSON.stringify(text)}`);
    return text.split('\n').slice(0, -1);
}
