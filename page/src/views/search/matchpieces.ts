interface Piece {
    text: string;
    isMatch: boolean;
}

const escaped = (text: string): string => text.replace(/[.*+?^${}()|[\]\\]/g, '\\$&');

/** A name, cut where one of the texts occurs in it, whatever its case. */
export function matchPieces(name: string, wanted: string[]): Piece[] {
    const texts = wanted.filter((text) => text !== '');
    if (!texts.length) return [{ text: name, isMatch: false }];
    // The longest first: of two that begin at one place it is the one that is seen.
    texts.sort((first, second) => second.length - first.length);
    const pattern = new RegExp(`(${texts.map(escaped).join('|')})`, 'giu');
    return name
        .split(pattern)
        .map((text, index) => ({ text, isMatch: index % 2 === 1 }))
        .filter(({ text }) => text !== '');
}
