/** Matches texts that contain every word of a query, ignoring case. */
export function matcher(query: string): (...texts: string[]) => boolean {
    const words = query
        .toLocaleLowerCase()
        .split(/\s+/)
        .filter((word) => word !== '');
    return (...texts) => {
        const whole = texts.join('\n').toLocaleLowerCase();
        return words.every((word) => whole.includes(word));
    };
}
