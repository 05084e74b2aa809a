import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { allScenes } from './allscenes';
import type { Scene } from './harness.mjs';
import { lastSent, open, play, sent, useBrowser } from './playing';

const scenes = await allScenes();
/** The scene that each view is introduced with. */
const first = scenes.filter(
    ({ name, page }) => !name.includes('-') && page !== 'vyrNpEnvCheck.html',
);
const children = first.filter(({ page }) => page !== 'index.html');

/** What the library has to stop when a view closes; most need nothing. */
const types: Record<string, string> = {
    search: 'searchfile',
    crash: 'crash',
    environmentcheck: 'vyrrunningcheck',
};

useBrowser();

/** What is cut off or sticks out to the side, where nobody can scroll to it. */
function cutOff(view: Page): Promise<string[]> {
    return view.evaluate(() => {
        const names = [...document.querySelectorAll<HTMLElement>('button, h1, h2, legend, label')]
            .filter(
                (element) =>
                    element.getClientRects().length > 0 &&
                    element.scrollWidth > element.clientWidth + 1 &&
                    element.clientWidth > 0 &&
                    !element.matches('.title-bar-title') &&
                    getComputedStyle(element).display !== 'inline',
            )
            .map((element) => `cut off: ${element.innerText}`);
        const page = document.querySelector('main') ?? document.body;
        return page.scrollWidth > page.clientWidth + 1
            ? [...names, `${page.scrollWidth} pixels in ${page.clientWidth}`]
            : names;
    });
}

async function shown(scene: Scene, options = {}): Promise<Page> {
    const view = await open(scene, options);
    await scene.act?.(view);
    await view.getByText(scene.shows).waitFor();
    return view;
}

describe('at twice the text size in the smallest window', () => {
    it.concurrent.each(first)('nothing of $name is out of reach', async (scene) => {
        const view = await shown(scene, { textSize: 200, width: 606, height: 480 });
        expect(await cutOff(view)).toEqual([]);
        await view.close();
    });
});

describe('Escape', () => {
    it.each(children)('closes $name as what it was opened as', (scene) =>
        play(scene, async (view) => {
            await view.keyboard.press('Escape');
            await sent(view, 'closechildwindow');
            expect(await lastSent(view)).toEqual([
                { command: 'closechildwindow', args: { type: types[scene.name] ?? '' } },
            ]);
        }),
    );
});

describe('the keyboard', () => {
    it.each(first)('reaches every control of $name, with the focus in sight', (scene) =>
        play(scene, async (view) => {
            const wanted = await view.evaluate(() => {
                const controls = [
                    ...document.querySelectorAll<HTMLElement>(
                        'button, input, textarea, select, a[href], [tabindex]',
                    ),
                ];
                // Of the choices of one question, and of tabs, the keyboard reaches the chosen one.
                const reachable = controls.filter(
                    (element) =>
                        element.tabIndex >= 0 &&
                        !(element as HTMLButtonElement).disabled &&
                        element.getClientRects().length > 0 &&
                        !(
                            element instanceof HTMLInputElement &&
                            element.type === 'radio' &&
                            !element.checked
                        ),
                );
                reachable.forEach((element, index) => {
                    element.dataset.reach = String(index);
                });
                return reachable.length;
            });
            const reached = new Set<string>();
            const hidden: string[] = [];
            for (let presses = 0; presses < wanted * 2 + 10 && reached.size < wanted; ) {
                presses += 1;
                await view.keyboard.press('Tab');
                const at = await view.evaluate(() => {
                    const element = document.activeElement as HTMLElement;
                    // The visible part of a control whose input is not seen, or its frame.
                    const parts = [
                        element,
                        element.nextElementSibling,
                        element.closest('.el-input__wrapper'),
                    ];
                    const marked = parts.some(
                        (part) =>
                            part !== null &&
                            (getComputedStyle(part).outlineStyle !== 'none' ||
                                (part.matches('.el-input__wrapper, .el-textarea__inner') &&
                                    getComputedStyle(part).boxShadow !== 'none')),
                    );
                    return { reach: element.dataset.reach, marked, name: element.outerHTML };
                });
                if (at.reach === undefined) continue;
                reached.add(at.reach);
                if (!at.marked) hidden.push(at.name.slice(0, 200));
            }
            expect(hidden).toEqual([]);
            expect(reached.size).toBe(wanted);
        }),
    );
});
