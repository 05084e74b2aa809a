import postcss from 'postcss';

/**
 * What the embedded Chromium 87 lacks and a build for it does not translate, as patterns over
 * minified scripts. A name that the foundation script provides is not listed here.
 *
 * @type {[string, RegExp][]}
 */
const absentFromScripts = [
    ['structuredClone', /\bstructuredClone\(/],
    ['Object.hasOwn', /\bObject\.hasOwn\b/],
    ['crypto.randomUUID', /\.randomUUID\b/],
    ['AbortSignal.timeout', /\bAbortSignal\.(timeout|any)\b/],
    // Not after two more dots: that is what the minifier named a function, spread.
    ['at()', /(?<!\.\.)\.at\(-?[\w$]/],
    ['findLast()', /\.findLast(Index)?\(/],
    ['toSorted() and its kin', /\.to(Sorted|Reversed|Spliced)\(/],
    ['Object.groupBy', /\b(Object|Map)\.groupBy\b/],
    ['Promise.withResolvers', /\bPromise\.withResolvers\b/],
    ['Array.fromAsync', /\bArray\.fromAsync\b/],
    ['class static block', /\bstatic\{/],
    ['module syntax', /(^|[;}\n])\s*(import|export)[\s{*"']/],
    ['dynamic import', /\bimport\(/],
    ['evaluated text', /\bnew Function\(|[^.\w$]eval\(/],
];

/** @type {[string, RegExp][]} */
const absentSelectors = [
    [':is()', /:is\(/],
    [':where()', /:where\(/],
    [':has()', /:has\(/],
    [':not() of a list', /:not\([^()]*,/],
    ['nesting', /(^|[\s,])&/],
    [':user-valid', /:user-(in)?valid/],
];

const absentProperties = [
    'aspect-ratio',
    'accent-color',
    'container',
    'container-type',
    'container-name',
    'scrollbar-gutter',
    'text-wrap',
    'rotate',
    'scale',
    'translate',
    'scrollbar-color',
    'scrollbar-width',
    'forced-color-adjust',
];

const absentAtRules = ['container', 'layer', 'scope', 'starting-style'];

/** @type {[string, RegExp, RegExp?][]} */
const absentValues = [
    ['color-mix()', /\bcolor-mix\(/],
    ['dynamic viewport units', /\b\d+(\.\d+)?[dsl]v[hw]\b/],
    ['overflow: clip', /^clip$/, /^overflow/],
    ['oklch()', /\bok(lch|lab)\(/],
];

/**
 * Vue wraps the newer array methods of reactive arrays but never calls them itself, so the
 * page is safe as long as its own code does not.
 */
const tolerated = { foundation: ['toSorted() and its kin'] };

/** The features of the script `name` that the embedded browser lacks, by name. */
export function unsupportedInScript(script, name = '') {
    return absentFromScripts
        .filter(([feature, pattern]) => pattern.test(script) && !tolerated[name]?.includes(feature))
        .map(([feature]) => feature);
}

/** The features of `style` that the embedded browser lacks, by name. */
export function unsupportedInStyle(style) {
    const found = new Set();
    const root = postcss.parse(style);
    root.walkAtRules((rule) => {
        if (absentAtRules.includes(rule.name)) found.add(`@${rule.name}`);
    });
    root.walkRules((rule) => {
        for (const [name, pattern] of absentSelectors) {
            if (pattern.test(rule.selector)) found.add(name);
        }
        if (rule.parent?.type === 'rule') found.add('nesting');
    });
    root.walkDecls((declaration) => {
        if (absentProperties.includes(declaration.prop)) found.add(declaration.prop);
        for (const [name, value, property] of absentValues) {
            if (value.test(declaration.value) && (!property || property.test(declaration.prop))) {
                found.add(name);
            }
        }
    });
    return [...found];
}
