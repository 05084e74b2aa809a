import { readFile } from 'node:fs/promises';

const languages = ['en', 'zh-CN'];

/** What the frame of every view says, wherever the key is put together. */
const sharedTopics = ['views', 'frame', 'settings', 'failure'];

/** All texts, by language. */
export async function catalogues() {
    const entries = await Promise.all(languages.map(async (language) => {
        const file = new URL(`../src/locales/${language}.json`, import.meta.url);
        return [language, JSON.parse(await readFile(file, 'utf8'))];
    }));
    return Object.fromEntries(entries);
}

/** The top-level keys of the texts that these source texts name at the start of a literal. */
export function topicsOf(sources, catalogue) {
    return Object.keys(catalogue).filter((topic) => sharedTopics.includes(topic)
        || sources.some((text) => new RegExp(`['"\`]${topic}\\b`).test(text)));
}

/**
 * A script that gives a view its texts in all languages. Each language is a text of its own, which
 * is read only when it is shown, and quicker than the same as an object literal.
 */
export function textsScript(texts, topics) {
    const chosen = Object.entries(texts).map(([language, catalogue]) => {
        const own = Object.fromEntries(topics.map((topic) => [topic, catalogue[topic]]));
        return `${JSON.stringify(language)}:${JSON.stringify(JSON.stringify(own))}`;
    });
    return `window.pageTexts={${chosen.join(',')}};\n`;
}
