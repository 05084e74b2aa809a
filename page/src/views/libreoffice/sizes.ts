const units = ['byte', 'kilobyte', 'megabyte', 'gigabyte'] as const;
const step = 1000;

/** A size for people, such as "1.2 MB". */
export function sizeText(bytes: number, locale: string): string {
    const power = bytes < step ? 0 : Math.floor(Math.log10(bytes) / 3);
    const index = Math.min(power, units.length - 1);
    return new Intl.NumberFormat(locale, {
        style: 'unit',
        unit: units[index],
        maximumFractionDigits: 1,
    }).format(bytes / step ** index);
}
