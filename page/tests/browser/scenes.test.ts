import { readdirSync } from 'node:fs';
import { describe, expect, inject, it } from 'vitest';
import { allScenes } from './allscenes';
import { unexplained } from './disabled';
import { accessibilityFindings, unexpectedCommands } from './harness.mjs';
import { open, useBrowser } from './playing';

const scenes = await allScenes();
/** Checking the contrast a second time takes a third of a scene's time, so scenes take turns. */
const bothThemes = process.env.BOTH_THEMES === '1';
const turns = scenes.map((scene, turn) => ({
    ...scene,
    theme: turn % 2 === 0 ? ('light' as const) : ('dark' as const),
}));

useBrowser();

describe('in Chromium, the scene', () => {
    // Side by side, because a scene mostly waits: for its browser, or for a late answer.
    it.concurrent.each(turns)('$name shows what it should, and to everyone', async (scene) => {
        const page = await open(scene, { theme: scene.theme });
        const visible = (text: string | RegExp) => page.getByText(text).waitFor();
        await scene.act?.(page);
        await visible(scene.shows);
        expect(await accessibilityFindings(page, { bothThemes })).toEqual([]);
        expect(await unexplained(page)).toEqual([]);
        if (scene.later !== undefined) {
            await page.evaluate(() => window.answerLate());
            await visible(scene.later);
        }
        expect(page.complaints).toEqual([]);
        expect(await unexpectedCommands(page)).toEqual([]);
        await page.close();
    });
});

describe('every view', () => {
    it('has scenes', () => {
        const pages = readdirSync(inject('builtPage')).filter(
            (file) => file.endsWith('.html') && file !== 'waiting.html',
        );
        expect([...new Set(scenes.map(({ page }) => page))].sort()).toEqual(pages.sort());
    });
});
