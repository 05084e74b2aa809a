/** Why a key or value cannot be stored, by the name of its text; null when it can. */
type Objection = 'emptyKey' | 'dollar' | 'slash' | 'known' | 'number' | 'truth';

/** What one of the updater's own settings may hold. */
type Allowed = { from: number; to: number } | 'truth';

/** The settings of the updater that comes with the assistant; others have their own rules. */
const allowed = new Map<string, Allowed>([
    ['enabled', 'truth'],
    ['timeout', { from: 1, to: 60 }],
]);

/** The numbers that a setting may have, for its text. */
export function rangeOf(key: string): { from: number; to: number } {
    const range = allowed.get(key);
    return typeof range === 'object' ? range : { from: 0, to: 0 };
}

/** A command sends key and value as one text, separated by "$"; a task takes any text. */
export function valueObjection(key: string, value: string, takesAll: boolean): Objection | null {
    if (!takesAll && value.includes('$')) return 'dollar';
    const range = allowed.get(key);
    if (range === 'truth') return /^(true|false)$/.test(value) ? null : 'truth';
    if (!range) return null;
    const inRange = Number(value) >= range.from && Number(value) <= range.to;
    return /^\d+$/.test(value) && inRange ? null : 'number';
}

/** A slash would make a group within the group, which is not listed. */
export function keyObjection(key: string, present: string[]): Objection | null {
    const name = key.trim();
    if (name === '') return 'emptyKey';
    if (name.includes('$')) return 'dollar';
    if (/[/\\]/.test(name)) return 'slash';
    return present.includes(name) ? 'known' : null;
}
