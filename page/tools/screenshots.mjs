/**
 * Draws every view with a scripted host, in both themes and languages; with --all every scene of
 * it, which takes long.
 */
import { mkdir, readdir, writeFile } from 'node:fs/promises';
import { join, resolve } from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { Chromium, chromiumPath } from 'browser-driver';
import { openView } from '../tests/browser/harness.mjs';

const longestActMs = 5000;
const sceneFolder = fileURLToPath(new URL('../tests/browser/scenes', import.meta.url));

async function allScenes() {
    const files = (await readdir(sceneFolder)).sort();
    const modules = await Promise.all(files.map((file) => import(join(sceneFolder, file))));
    return modules.flatMap(({ scenes }) => scenes);
}

/** Some scenes press controls by their English names, and have no picture in another language. */
async function canAct(page, scene, language) {
    const acted = Promise.resolve(scene.act?.(page)).then(() => true);
    if (language === 'en_US') return acted;
    const has = await Promise.race([acted.catch(() => false), pause(longestActMs, false)]);
    if (!has) console.error(`${scene.name} is not drawn in ${language}`);
    return has;
}

async function draw(browser, pages, scene, options, target) {
    const page = await openView(browser, pages, scene, options);
    if (!(await canAct(page, scene, options.language))) {
        await page.close();
        return;
    }
    if (options.language === 'en_US') {
        await page.getByText(scene.shows).waitFor();
    } else {
        // The busy sign of a scene that waits comes after half a second.
        await pause(650);
    }
    await pause(150);
    await writeFile(target, await page.screenshot());
    for (const complaint of page.complaints) console.error(`${scene.name}: ${complaint}`);
    await page.close();
}

const { values } = parseArgs({
    options: {
        page: { type: 'string', default: 'dist' },
        out: { type: 'string', default: '../docs/screenshots' },
        chromium: { type: 'string', default: chromiumPath },
        width: { type: 'string', default: '1000' },
        height: { type: 'string', default: '680' },
        textSize: { type: 'string', default: '100' },
        only: { type: 'string', default: '' },
        all: { type: 'boolean', default: false },
    },
});
const pages = resolve(values.page);
const out = resolve(values.out);
const size = {
    width: Number(values.width),
    height: Number(values.height),
    textSize: Number(values.textSize),
};
await mkdir(out, { recursive: true });
const browser = await Chromium.start(values.chromium);
try {
    const scenes = (await allScenes()).filter(
        ({ name }) => name.startsWith(values.only) && (values.all || !name.includes('-')),
    );
    for (const scene of scenes) {
        for (const theme of ['light', 'dark']) {
            for (const language of ['en_US', 'zh_CN']) {
                const target = join(out, `${scene.name}-${theme}-${language}.png`);
                await draw(browser, pages, scene, { ...size, theme, language }, target);
            }
        }
    }
} finally {
    await browser.close();
}
console.log(out);
