import { readdirSync, readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parse, type TemplateChildNode } from '@vue/compiler-dom';
import { parse as parseComponent } from '@vue/compiler-sfc';
import { describe, expect, it } from 'vitest';
import { textsIn, textsOfViews } from '../build/texts.mjs';

const source = join(dirname(fileURLToPath(import.meta.url)), '../src');
const files = readdirSync(source, { recursive: true, encoding: 'utf8' });
const components = files.filter((file) => file.endsWith('.vue'));
const code = files.filter((file) => /\.(vue|ts)$/.test(file));
/** With the page of the plug-in check. */
const naming = files.filter((file) => /\.(vue|ts|html)$/.test(file));

type Texts = { en: object; 'zh-CN': object };
const views = (await textsOfViews()) as Record<string, Texts>;
const frame = (await textsIn('frame')) as Texts;
const plugInCheck = (await textsIn('plugincheck')) as Texts;

/** All texts of a language by their keys, those of a view under its name. */
function catalogueOf(language: keyof Texts): object {
    const ofViews = Object.entries(views).map(([view, texts]) => [view, texts[language]]);
    return { ...frame[language], ...plugInCheck[language], ...Object.fromEntries(ofViews) };
}

const english = catalogueOf('en');
const chinese = catalogueOf('zh-CN');

function leaves(catalogue: object, path = ''): Map<string, string> {
    const found = new Map<string, string>();
    for (const [key, value] of Object.entries(catalogue)) {
        if (typeof value === 'string') found.set(path + key, value);
        else for (const [name, text] of leaves(value, `${path}${key}.`)) found.set(name, text);
    }
    return found;
}

/** A key that is put together, such as `home.groups.${name}`: any word may stand in a gap. */
const template = /`(\w+[._][\w.]*(?:\$\{[^`}]*\}[\w.]*)+)`/g;

/** Whether a source text names a key, outright or put together. */
function namesOf(text: string): (key: string) => boolean {
    const outright = new Set([...text.matchAll(/['"]([\w.-]+)['"]/g)].map((match) => match[1]!));
    const patterns = [...text.matchAll(template)].map(
        (match) =>
            new RegExp(`^${match[1]!.replace(/\./g, '\\.').replace(/\$\{[^}]*\}/g, '[\\w-]+')}$`),
    );
    return (key) => outright.has(key) || patterns.some((pattern) => pattern.test(key));
}

const englishTexts = leaves(english);
const chineseTexts = leaves(chinese);

function placeholders(text: string): string[] {
    return [...new Set([...text.matchAll(/\{(\w+)\}/g)].map((match) => match[1]!))].sort();
}

/** Attributes that a person reads or hears. */
const spoken = ['title', 'alt', 'placeholder', 'label', 'description', 'aria-label'];
const word = /\p{L}{2,}/u;

function bareTexts(nodes: TemplateChildNode[]): string[] {
    return nodes.flatMap((node): string[] => {
        if ('content' in node && typeof node.content === 'string') {
            return node.type === 2 && word.test(node.content) ? [node.content.trim()] : [];
        }
        if (node.type !== 1) return [];
        const attributes = node.props.flatMap((prop) =>
            prop.type === 6 && spoken.includes(prop.name) && word.test(prop.value?.content ?? '')
                ? [`${prop.name}="${prop.value?.content}"`]
                : [],
        );
        return [...attributes, ...bareTexts(node.children)];
    });
}

function bareTextsOf(component: string): string[] {
    const { descriptor } = parseComponent(component);
    return bareTexts(parse(descriptor.template?.content ?? '').children);
}

describe('the catalogues', () => {
    it('have the same keys', () => {
        expect([...chineseTexts.keys()]).toEqual([...englishTexts.keys()]);
    });

    it('name the same values in both languages', () => {
        for (const [key, text] of englishTexts) {
            expect([key, placeholders(chineseTexts.get(key)!)]).toEqual([key, placeholders(text)]);
        }
    });

    it('have no empty text', () => {
        for (const texts of [englishTexts, chineseTexts]) {
            for (const [key, text] of texts) expect([key, text.trim()]).not.toEqual([key, '']);
        }
    });

    it('hold every key that the code names outright', () => {
        const topics = Object.keys(english).join('|');
        const literal = new RegExp(`'((?:${topics})(?:\\.\\w+)+)'`, 'g');
        const named = code.flatMap((file) =>
            [...readFileSync(join(source, file), 'utf8').matchAll(literal)]
                .map((match) => match[1]!)
                .filter((key) => !/\.(html|txt)$/.test(key))
                .map((key) => `${key} in ${file}`),
        );
        expect(named.length).toBeGreaterThan(100);
        expect(named.filter((one) => !englishTexts.has(one.split(' ')[0]!))).toEqual([]);
    });

    it('are named by a view only where it has them: its own and those of the frame', () => {
        const topics = Object.keys(views);
        const foreign = code.flatMap((file) => {
            const own = /^views\/(\w+)/.exec(file)?.[1];
            const others = topics.filter((topic) => topic !== own).join('|');
            const literal = new RegExp(`['"\`](?:${others})\\.(?!(?:html|txt)\\b)[\\w.$]+`, 'g');
            const text = readFileSync(join(source, file), 'utf8');
            return [...text.matchAll(literal)].map(([key]) => `${key} in ${file}`);
        });
        expect(foreign).toEqual([]);
    });

    it('hold no text that the code does not name', () => {
        const names = namesOf(
            naming.map((file) => readFileSync(join(source, file), 'utf8')).join('\n'),
        );
        // The frame and the home page put these together with the name of a view.
        const ofEveryView = /^\w+\.(title|what)$/;
        expect(
            [...englishTexts.keys()].filter((key) => !ofEveryView.test(key) && !names(key)),
        ).toEqual([]);
        expect(names('home.nowhere')).toBe(false);
    });
});

describe('a component', () => {
    it.each(components)('%s holds no bare literal', (file) => {
        expect(bareTextsOf(readFileSync(join(source, file), 'utf8'))).toEqual([]);
    });

    it('with one would be found out', () => {
        expect(
            bareTextsOf('<template><p title="Hello">{{ x }}<b>World</b></p></template>'),
        ).toEqual(['title="Hello"', 'World']);
    });
});
