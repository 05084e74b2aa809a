import { describe, expect, it } from 'vitest';
import frame from '@/frame/texts.en.json';
import { textsOfViews } from '../../build/texts.mjs';
import { allScenes } from './allscenes';
import { play, useBrowser } from './playing';

const scenes = await allScenes();
const views = (await textsOfViews()) as Record<string, Record<string, { title: string }>>;

/** The first scene of each view of the window; the plug-in check opens elsewhere. */
const first = [
    ...new Map(
        scenes
            .filter(({ page }) => page !== 'vyrNpEnvCheck.html')
            .reverse()
            .map((scene) => [scene.page, scene]),
    ).values(),
];

useBrowser();

describe('the language', () => {
    it.each(first)('of $page changes at once and back again', (scene) =>
        play(scene, async (view) => {
            const name = scene.page === 'index.html' ? 'home' : scene.page.replace('.html', '');
            await view.locator('button', { named: frame.settings.title }).click();
            for (const language of ['zh-CN', 'en']) {
                const { title } = views[name]![language]!;
                await view.locator(`input[name="language"][value="${language}"]`).check();
                await view.getByText(title, { exact: true }).waitFor();
                expect(await view.evaluate('document.title')).toBe(title);
                expect(await view.locator('html').getAttribute('lang')).toBe(language);
            }
        }),
    );
});
