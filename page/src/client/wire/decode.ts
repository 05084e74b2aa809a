import { UnreadableAnswer } from './outcome';

/** Reads the result of a command; throws UnreadableAnswer for another shape. */
export type Decoder<Value> = (result: unknown) => Value;

export type Members = Record<string, unknown>;

export function text(result: unknown): string {
    if (typeof result !== 'string') throw new UnreadableAnswer(`no text: ${typeof result}`);
    return result;
}

export function flag(result: unknown): boolean {
    if (typeof result !== 'boolean') throw new UnreadableAnswer(`no flag: ${typeof result}`);
    return result;
}

export function number(result: unknown): number {
    if (typeof result !== 'number') throw new UnreadableAnswer('no number');
    return result;
}

/** One of a fixed set of words. */
export function word<Word extends string>(result: unknown, words: readonly Word[]): Word {
    const found = words.find((known) => known === result);
    if (found === undefined) throw new UnreadableAnswer(`unknown word: ${String(result)}`);
    return found;
}

/** What may be left out. */
export function optional<Value, Otherwise>(
    result: unknown,
    decode: Decoder<Value>,
    otherwise: Otherwise,
): Value | Otherwise {
    return result === undefined || result === null ? otherwise : decode(result);
}

export function members(result: unknown): Members {
    if (typeof result !== 'object' || result === null || Array.isArray(result)) {
        throw new UnreadableAnswer('no object');
    }
    return result as Members;
}

export function list(result: unknown): unknown[] {
    if (!Array.isArray(result)) throw new UnreadableAnswer('no list');
    return result;
}

export const textList = (result: unknown): string[] => list(result).map(text);

/** The answer of a command that only acts. */
export function success(result: unknown): void {
    if (result !== 'success') throw new UnreadableAnswer('neither success nor error');
}

/** A byte order mark is kept: in a file's name it is a character like any other. */
const decoder = new TextDecoder('utf-8', { ignoreBOM: true });
const beyondAscii = /[\x80-\xff]/;

/** Text that travels as the base64 of its UTF-8 bytes; most is ASCII, and its bytes the text. */
export function base64Text(result: unknown): string {
    let bytes: string;
    try {
        bytes = atob(text(result));
    } catch (error) {
        if (error instanceof UnreadableAnswer) throw error;
        throw new UnreadableAnswer('no base64 text');
    }
    if (!beyondAscii.test(bytes)) return bytes;
    return decoder.decode(Uint8Array.from(bytes, (byte) => byte.charCodeAt(0)));
}

export function toBase64Text(value: string): string {
    let bytes = '';
    for (const byte of new TextEncoder().encode(value)) bytes += String.fromCharCode(byte);
    return btoa(bytes);
}

/** The non-empty, trimmed pieces of a list that was joined with "|". */
export function joinedList(result: unknown): string[] {
    return text(result)
        .split('|')
        .map((piece) => piece.trim())
        .filter((piece) => piece !== '');
}

/** The values of an object keyed "1", "2", … in that order. */
export function numberedLines(result: unknown): string[] {
    return Object.entries(members(result))
        .sort(([first], [second]) => Number(first) - Number(second))
        .map(([, line]) => text(line));
}

/** An object whose members are all text. */
export function textTable(result: unknown): Record<string, string> {
    return Object.fromEntries(
        Object.entries(members(result)).map(([name, value]) => [name, text(value)]),
    );
}
