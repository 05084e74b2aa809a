import { readFileSync } from 'node:fs';
import { describe, expect, it } from 'vitest';

const style = readFileSync(new URL('../src/frame/critical.css', import.meta.url), 'utf8');

/** The colours of a theme, those of its base included. */
function colours(selectors: string[]): Record<string, string> {
    const blocks = selectors.map((selector) => {
        const start = style.indexOf(`${selector} {`);
        expect(start).toBeGreaterThanOrEqual(0);
        return style.slice(start, style.indexOf('}', start));
    });
    const found = blocks.flatMap((block) => [...block.matchAll(/--([\w-]+): (#[\da-f]+);/g)]);
    return Object.fromEntries(found.map(([, name, value]) => [name, value]));
}

function luminance(colour: string): number {
    const hex = colour.length === 4 ? colour.replace(/[\da-f]/g, '$&$&') : colour;
    const [red = 0, green = 0, blue = 0] = [1, 3, 5].map((at) => {
        const part = parseInt(hex.slice(at, at + 2), 16) / 255;
        return part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

/** As WCAG defines it. */
function contrast(one = '', other = ''): number {
    const [light = 0, dark = 0] = [luminance(one), luminance(other)].sort((a, b) => b - a);
    return (light + 0.05) / (dark + 0.05);
}

const grounds = ['background', 'surface', 'surface-raised'];

describe.each([
    ['light', [':root'], 4.5],
    ['dark', [':root', ':root.dark'], 4.5],
    ['high-contrast', [':root', ':root.dark', ':root.contrast'], 7],
] as const)('the %s theme', (_, selectors, ofText) => {
    const theme = colours([...selectors]);

    it.each(grounds)('has borders of controls that stand out from its %s', (ground) => {
        expect(contrast(theme['border-strong'], theme[ground])).toBeGreaterThanOrEqual(3);
        expect(contrast(theme.accent, theme[ground])).toBeGreaterThanOrEqual(3);
    });

    it.each(grounds)('has text that can be read on its %s', (ground) => {
        expect(contrast(theme.text, theme[ground])).toBeGreaterThanOrEqual(ofText);
        expect(contrast(theme['text-muted'], theme[ground])).toBeGreaterThanOrEqual(ofText);
    });
});
