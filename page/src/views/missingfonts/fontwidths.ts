/** A family in style sheets, whatever is in its name. */
export function familyName(family: string): string {
    return `"${family.replace(/["\\]/g, '\\$&').replace(/[\n\r\f]/g, ' ')}"`;
}

/**
 * How much wider a text is in one family than in another, as a part of it; null where it cannot be
 * measured.
 */
export function widthChange(text: string, from: string, to: string): number | null {
    const context = document.createElement('canvas').getContext('2d');
    if (!context) return null;
    const widthIn = (family: string): number => {
        context.font = `64px ${familyName(family)}`;
        return context.measureText(text).width;
    };
    const meant = widthIn(from);
    return meant > 0 ? widthIn(to) / meant - 1 : null;
}
