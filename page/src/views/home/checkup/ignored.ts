/** The findings that the user ignores, by their ids. */

export const ignoredKey = 'assistant.ignoredFindings';

/** More than anyone ignores on purpose. */
const limit = 200;

export function parseIgnored(stored: string | null): string[] {
    try {
        const found: unknown = JSON.parse(stored ?? '[]');
        return Array.isArray(found)
            ? found.filter((id): id is string => typeof id === 'string').slice(-limit)
            : [];
    } catch {
        // Not ours or damaged: nothing is ignored, and the next choice overwrites it.
        return [];
    }
}

export function withIgnored(ignored: readonly string[], id: string): string[] {
    return [...ignored.filter((known) => known !== id), id].slice(-limit);
}

export function withoutIgnored(ignored: readonly string[], id: string): string[] {
    return ignored.filter((known) => known !== id);
}

export function readIgnored(): string[] {
    try {
        return parseIgnored(localStorage.getItem(ignoredKey));
    } catch {
        return [];
    }
}

export function writeIgnored(ignored: readonly string[]): void {
    try {
        localStorage.setItem(ignoredKey, JSON.stringify(ignored));
    } catch {
        console.warn('This page may not keep which findings are ignored.');
    }
}
