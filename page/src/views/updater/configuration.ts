/** Why a key or value cannot be stored, by the name of its text; null when it can. */
type Objection = 'emptyKey' | 'dollar' | 'slash' | 'known';

/** Key and value are sent as one text, separated by "$". */
export function valueObjection(value: string): Objection | null {
    return value.includes('$') ? 'dollar' : null;
}

/** A slash would make a group within the group, which is not listed. */
export function keyObjection(key: string, present: string[]): Objection | null {
    const name = key.trim();
    if (name === '') return 'emptyKey';
    if (name.includes('$')) return 'dollar';
    if (/[/\\]/.test(name)) return 'slash';
    return present.includes(name) ? 'known' : null;
}
