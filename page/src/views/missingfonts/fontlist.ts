/**
 * The names in the suite's list of missing fonts, which are separated by ";" or, without one, by
 * ",", and by line ends.
 */
export function fontNames(list: string): string[] {
    const separator = list.includes(';') ? /[;\r\n]+/ : /[,，\r\n]+/;
    const names = list
        .split(separator)
        .map((name) =>
            name
                .trim()
                .replace(/^(["'])(.*)\1$/, '$2')
                .trim(),
        )
        .filter((name) => name !== '');
    const seen = new Set<string>();
    return names.filter((name) => {
        const key = name.toLowerCase();
        return !seen.has(key) && seen.add(key);
    });
}
