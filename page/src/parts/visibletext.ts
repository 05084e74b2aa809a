/** Text from outside, split so that characters that would not show, or mislead, are named. */
interface TextPiece {
    text: string;
    /** Set for a named character: its code point, such as "U+202E". */
    codePoint?: string;
}

/**
 * Controls, format characters (bidirectional overrides, zero-width marks, the byte order mark)
 * and separators that break lines: names that hold them can pretend to be others.
 */
const unseen = /[\p{Cc}\p{Cf}\u2028\u2029\uFFF9-\uFFFB]/u;

function codePointName(character: string): string {
    const code = character.codePointAt(0) ?? 0;
    return `U+${code.toString(16).toUpperCase().padStart(4, '0')}`;
}

export function textPieces(text: string): TextPiece[] {
    const pieces: TextPiece[] = [];
    for (const character of text) {
        const last = pieces[pieces.length - 1];
        if (unseen.test(character)) {
            const codePoint = codePointName(character);
            pieces.push({ text: `⟨${codePoint}⟩`, codePoint });
        } else if (last && !last.codePoint) {
            last.text += character;
        } else {
            pieces.push({ text: character });
        }
    }
    return pieces;
}

/** The same as plain text, for titles and for copying. */
export function visibleText(text: string): string {
    return textPieces(text)
        .map((piece) => piece.text)
        .join('');
}
