/** How a face is asked for in style sheets. */
interface FaceStyle {
    fontFamily: string;
    fontWeight: number;
    fontStyle: 'normal' | 'italic';
}

const weights: [RegExp, number][] = [
    [/extra ?light|ultra ?light/i, 200],
    [/semi ?bold|demi ?bold|\bdemi\b/i, 600],
    [/extra ?bold|ultra ?bold/i, 800],
    [/\bthin\b|hairline/i, 100],
    [/\blight\b/i, 300],
    [/\bmedium\b/i, 500],
    [/\bbold\b/i, 700],
    [/\bblack\b|\bheavy\b/i, 900],
];

export function faceStyle(family: string, style: string): FaceStyle {
    const quoted = family.replace(/["\\]/g, '\\$&').replace(/[\n\r\f]/g, ' ');
    return {
        fontFamily: `"${quoted}"`,
        fontWeight: weights.find(([pattern]) => pattern.test(style))?.[1] ?? 400,
        fontStyle: /italic|oblique/i.test(style) ? 'italic' : 'normal',
    };
}
