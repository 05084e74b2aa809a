import { describe, expect, it } from 'vitest';
import chinese from '@/locales/zh-CN.json';
import english from '@/locales/en.json';
import { allScenes } from './allscenes';
import { play, useBrowser } from './playing';

const scenes = await allScenes();

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
            const titles = [english, chinese].map(
                ({ views }) => views[name as keyof typeof views].title,
            );
            await view.locator('button', { named: english.settings.title }).click();
            for (const [language, title] of [
                ['zh-CN', titles[1]],
                ['en', titles[0]],
            ] as const) {
                await view.locator(`input[name="language"][value="${language}"]`).check();
                await view.getByText(title!, { exact: true }).waitFor();
                expect(await view.evaluate('document.title')).toBe(title);
                expect(await view.locator('html').getAttribute('lang')).toBe(language);
            }
        }),
    );
});
