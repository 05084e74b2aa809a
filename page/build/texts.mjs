import { readdir, readFile } from 'node:fs/promises';

const languages = ['en', 'zh-CN'];
const source = new URL('../src/', import.meta.url);

/** The texts of a folder of the source, by language. */
export async function textsIn(folder) {
    const entries = languages.map(async (language) => {
        const file = new URL(`${folder}/texts.${language}.json`, source);
        return [language, JSON.parse(await readFile(file, 'utf8'))];
    });
    return Object.fromEntries(await Promise.all(entries));
}

/** The texts of all views, by view and language. */
export async function textsOfViews() {
    const views = await readdir(new URL('views', source));
    const entries = views.map(async (view) => [view, await textsIn(`views/${view}`)]);
    return Object.fromEntries(await Promise.all(entries));
}

/**
 * What a view can show beyond the texts of the frame, by language: its own under its name, and
 * title and purpose of the views that it offers.
 */
export function catalogues(views, view, offered = []) {
    const namesOf = (name, language) => {
        const { title, what } = views[name][language];
        return [name, { title, what }];
    };
    return Object.fromEntries(
        languages.map((language) => [
            language,
            {
                ...Object.fromEntries(offered.map((name) => namesOf(name, language))),
                [view]: views[view][language],
            },
        ]),
    );
}

/** The same text in ASCII: Chromium keeps such a script in half the memory. */
const inAscii = (text) =>
    text.replace(/[^\0-\x7f]/g, (sign) => `\\u${sign.charCodeAt(0).toString(16).padStart(4, '0')}`);

/**
 * A script that has texts in all languages under a name of the window. Each language is a text of
 * its own, which is read only when it is shown, and quicker than the same as an object literal.
 */
export function textsScript(name, byLanguage) {
    const chosen = Object.entries(byLanguage).map(
        ([language, catalogue]) =>
            `${JSON.stringify(language)}:${inAscii(JSON.stringify(JSON.stringify(catalogue)))}`,
    );
    return `window.${name}={${chosen.join(',')}};\n`;
}
