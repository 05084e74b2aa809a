import { readdirSync } from 'node:fs';
import { chromium, type Browser } from 'playwright-core';
import { afterAll, beforeAll, describe, expect, inject, it } from 'vitest';
import { allScenes } from './allscenes';
import { unexplained } from './disabled';
import { accessibilityFindings, openView, unexpectedCommands } from './harness.mjs';

const scenes = await allScenes();

let browser: Browser;
beforeAll(async () => {
    browser = await chromium.connect(inject('browserAddress'));
});
afterAll(() => browser.close());

describe('in Chromium, the scene', () => {
    // Side by side, because a scene mostly waits: for its browser, or for a late answer.
    it.concurrent.each(scenes)('$name shows what it should, and to everyone', async (scene) => {
        const page = await openView(browser, inject('builtPage'), scene);
        const visible = (text: string | RegExp) =>
            page.getByText(text).filter({ visible: true }).first().waitFor();
        await scene.act?.(page);
        await visible(scene.shows);
        expect(await accessibilityFindings(page)).toEqual([]);
        expect(await unexplained(page)).toEqual([]);
        if (scene.later !== undefined) {
            await page.evaluate(() => window.answerLate());
            await visible(scene.later);
        }
        expect(page.complaints).toEqual([]);
        expect(await unexpectedCommands(page)).toEqual([]);
        await page.context().close();
    });
});

describe('every view', () => {
    it('has scenes', () => {
        const pages = readdirSync(inject('builtPage'))
            .filter((file) => file.endsWith('.html') && file !== 'waiting.html');
        expect([...new Set(scenes.map(({ page }) => page))].sort()).toEqual(pages.sort());
    });
});
