import { SAMPLES } from '../scripts/desktoptools.mjs';

const OLE = Buffer.concat([Buffer.from('d0cf11e0a1b11ae1', 'hex'), Buffer.alloc(4000)]);
const ZIP = Buffer.concat([Buffer.from('504b0304', 'hex'), Buffer.alloc(400)]);
const BINARY = Buffer.from(Array.from({ length: 400 }, (_, at) => (at * 151) % 256));

/** What a document of that suffix looks like to somebody who only reads its start. */
export function contentOf(suffix) {
    if (suffix === '.rtf')
        return '{\\rtf1 sample}';
    if (['.doc', '.dot', '.xls', '.xlt', '.ppt', '.pps', '.pot'].includes(suffix))
        return OLE;
    return /^\.(doc|dot|xls|xlt|ppt|pps|pot)/.test(suffix) ? ZIP : BINARY;
}

/** Puts the suite's sample documents into the runnable tree. */
export async function installSamples(root) {
    for (const { suffix } of SAMPLES)
        await root.writeFile(`/suite/office/asso_template/vyr${suffix}`, contentOf(suffix));
}
