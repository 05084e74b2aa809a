interface DiffLine {
    kind: 'added' | 'removed' | 'same' | 'place';
    /** With its sign; of a place the number of its first line. */
    text: string;
}

const kinds: Record<string, DiffLine['kind']> = { '+': 'added', '-': 'removed' };
const place = /^@@ -(\d+)/;

/** The lines of a unified diff, without the names of the file; a new file has no place. */
export function diffLines(diff: string): DiffLine[] {
    const lines = diff.replace(/\n$/, '').split('\n');
    return lines
        .slice(lines[0]?.startsWith('--- ') ? 2 : 0)
        .map((text): DiffLine => {
            const line = place.exec(text)?.[1];
            if (line !== undefined) return { kind: 'place', text: line };
            return { kind: kinds[text.charAt(0)] ?? 'same', text };
        })
        .filter(({ kind, text }) => kind !== 'place' || text !== '0');
}

const letters = ['r', 'w', 'x'];

/** Octal permissions as ls(1) writes them: 0640 is rw-r-----. */
export function rightsText(mode: string): string {
    return [...mode.slice(-3)]
        .map((digit) =>
            letters
                .map((letter, bit) => ((Number(digit) >> (2 - bit)) & 1 ? letter : '-'))
                .join(''),
        )
        .join('');
}
