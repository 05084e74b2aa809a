import { describe, expect, it } from 'vitest';
import { allScenes } from './allscenes';
import { named, open, useBrowser } from './playing';

const first = (await allScenes()).filter(({ name }) => !name.includes('-'));

useBrowser();

describe('for a user who wants less motion', () => {
    /** What of the view moves, with how long it takes. */
    async function moving(stillness: boolean): Promise<string[]> {
        const view = await open(named('associations-never'), { stillness });
        await view.locator('.spinner').waitFor();
        const found = await view.evaluate(() => {
            const durations = (style: CSSStyleDeclaration): string[] => [
                ...style.transitionDuration.split(', '),
                ...(style.animationName === 'none' ? [] : style.animationDuration.split(', ')),
            ];
            return [...document.querySelectorAll('*')].flatMap((one) =>
                durations(getComputedStyle(one)),
            );
        });
        await view.close();
        return [...new Set(found)].sort();
    }

    it('nothing moves but a slow spinner', async () => {
        expect(await moving(true)).toEqual(['0s', '3s']);
        expect(await moving(false)).not.toEqual(['0s', '3s']);
    });
});

describe('on 1366 × 768 at scale 1.5', () => {
    // What the desktop's panel and the list of tools leave of it, in the page's own pixels.
    const screen = { width: 690, height: 460, scale: 1.5 };

    it.concurrent.each(
        first.flatMap((scene) => [
            { ...scene, language: 'en_US' },
            { ...scene, language: 'zh_CN' },
        ]),
    )('$name in $language fits its width', async (scene) => {
        const view = await open(scene, { ...screen, language: scene.language });
        if (scene.language === 'en_US') {
            await scene.act?.(view);
            await view.getByText(scene.shows).waitFor();
        }
        expect(await view.evaluate(() => window.devicePixelRatio)).toBe(1.5);
        const wide = await view.evaluate(() => {
            const places = [document.documentElement, ...document.querySelectorAll('main')];
            return places
                .filter(({ scrollWidth, clientWidth }) => scrollWidth > clientWidth)
                .map(({ className, scrollWidth, clientWidth }) =>
                    [className, scrollWidth, clientWidth].join(' '),
                );
        });
        expect(wide).toEqual([]);
        await view.close();
    });

    it('a button beside long values keeps its word in one line', async () => {
        const view = await open(named('updater'), { width: 720, height: 480, language: 'zh_CN' });
        await view.until(() => document.body.innerText.includes('编辑'));
        const lines = await view.evaluate(() =>
            [...document.querySelectorAll('button')]
                .filter(({ innerText }) => innerText.trim() === '编辑')
                .map((button) => {
                    const text = document.createRange();
                    text.selectNodeContents(button.querySelector('span')!);
                    return new Set([...text.getClientRects()].map(({ top }) => top)).size;
                }),
        );
        expect(lines).toEqual([1, 1, 1, 1, 1]);
        await view.close();
    });
});
