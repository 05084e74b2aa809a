/** What a browser says of one plug-in. */
export interface PlugIn {
    name: string;
    description: string;
    file: string;
    types: string[];
}

/**
 * What the list of a browser's plug-ins tells:
 * - suite: the suite's plug-in is among them;
 * - others: the browser runs plug-ins, but not the suite's;
 * - builtIn: it lists only the document viewers that current browsers list for old pages' sake;
 * - none: it lists nothing.
 */
type Verdict = 'suite' | 'others' | 'builtIn' | 'none';

/** Names that current browsers report for parts of their own, whatever is installed. */
const builtInName = /\bpdf\b|^native client$|widevine|openh264|^shockwave for director$/i;

const suiteWords = /vyr|orvane/i;

export function isSuitePlugIn({ name, description, file, types }: PlugIn): boolean {
    return [name, description, file, ...types].some((text) => suiteWords.test(text));
}

function isBuiltIn(plugIn: PlugIn): boolean {
    return builtInName.test(plugIn.name) && !isSuitePlugIn(plugIn);
}

export function judgePlugIns(plugIns: PlugIn[]): Verdict {
    if (plugIns.some(isSuitePlugIn)) return 'suite';
    if (plugIns.length === 0) return 'none';
    return plugIns.every(isBuiltIn) ? 'builtIn' : 'others';
}

/** The plug-ins that the browser lists at the moment. */
export function listedPlugIns(plugins: ArrayLike<Plugin>): PlugIn[] {
    const found: PlugIn[] = [];
    for (let index = 0; index < plugins.length; index += 1) {
        const { name, description, filename, length } = plugins[index]!;
        const types = [];
        for (let type = 0; type < length; type += 1) types.push(plugins[index]![type]!.type);
        found.push({ name, description, file: filename, types });
    }
    return found;
}

/** Old browsers do not know these by their Unicode class, so that they are listed here. */
const unseen = new RegExp(
    '[\\u0000-\\u001f\\u007f-\\u009f\\u00ad\\u061c\\u180e\\u200b-\\u200f' +
        '\\u2028-\\u202e\\u2060-\\u206f\\ufeff\\ufff9-\\ufffb]',
    'g',
);

/** Text from outside with characters that would not show, or mislead, named. */
export function visibleText(text: string): string {
    return text.replace(
        unseen,
        (character) =>
            `⟨U+${`000${character.charCodeAt(0).toString(16).toUpperCase()}`.slice(-4)}⟩`,
    );
}
