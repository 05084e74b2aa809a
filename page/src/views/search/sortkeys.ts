import { sortInto } from './slicedsort';

/** The collator compares longer numbers in pieces. */
const longestNumber = 254;
const zero = 0x30;
const nine = 0x39;
/** Texts whose characters are looked at between two steps. */
const learnedAtOnce = 1000;

/**
 * Whether a character has a place of its own among all others, whatever stands beside it. Accents,
 * and the letters of many scripts, have none.
 */
const isSimple = (code: number): boolean =>
    (code >= 0x20 && code < 0x7f) || (code >= 0x4e00 && code < 0xa000);
const isDigit = (code: number): boolean => code >= zero && code <= nine;

/**
 * Texts made into keys that compare as the texts do in a language, many times faster: each
 * character by its rank among those that were seen, each number by its value. Texts with the same
 * key differ in less, such as case.
 */
export class SortKeys {
    private readonly collator: Intl.Collator;
    /** The rank of each character code; 0 where it was not seen. */
    private readonly ranks = new Uint16Array(0x10000);
    /** In their order. */
    private seen: number[] = [];
    private readonly units = new Uint16Array(0x1000);

    constructor(language: string) {
        this.collator = new Intl.Collator(language, { sensitivity: 'base' });
    }

    /** Looks at all characters of texts, bit by bit; answers whether keys have changed. */
    *learn(texts: Iterable<string>): Generator<undefined, boolean, undefined> {
        const found = new Set<number>(this.seen.length ? [] : [zero]);
        let count = 0;
        for (const text of texts) {
            for (let index = 0; index < text.length; index += 1) {
                const code = text.charCodeAt(index);
                if (this.ranks[code] === 0 && isSimple(code) && !isDigit(code)) found.add(code);
            }
            count += 1;
            if (count % learnedAtOnce === 0) yield;
        }
        const added = [...found];
        if (!added.length) return false;
        const signs = new Map([...this.seen, ...added].map((c) => [c, String.fromCharCode(c)]));
        const { compare } = this.collator;
        const order = yield* sortInto(this.seen, added, (one, other) =>
            compare(signs.get(one)!, signs.get(other)!),
        );
        let rank = 0;
        order.forEach((code, index) => {
            const before = order[index - 1];
            const isAlike = before !== undefined && !compare(signs.get(before)!, signs.get(code)!);
            if (!isAlike) rank += 1;
            this.ranks[code] = rank;
        });
        this.seen = order;
        return true;
    }

    /** The key of a text whose characters were learned; empty where it cannot have one. */
    key(text: string): string {
        const { ranks, units } = this;
        if (text.length * 3 > units.length) return '';
        let length = 0;
        for (let index = 0; index < text.length; index += 1) {
            const code = text.charCodeAt(index);
            if (isDigit(code)) {
                let end = index + 1;
                while (end < text.length && isDigit(text.charCodeAt(end))) end += 1;
                if (end - index > longestNumber) return '';
                while (index < end - 1 && text.charCodeAt(index) === zero) index += 1;
                units[length++] = ranks[zero]!;
                units[length++] = end - index;
                for (; index < end; index += 1) units[length++] = text.charCodeAt(index);
                index -= 1;
            } else {
                const rank = ranks[code]!;
                if (rank === 0) return '';
                units[length++] = rank;
            }
        }
        return String.fromCharCode(...units.subarray(0, length));
    }
}
