import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { allScenes } from './allscenes';
import { open, useBrowser } from './playing';

/** Those that have panels or rows which the view is not introduced with. */
const further = [
    'associations-explained-fixed',
    'crash-watched',
    'environmentcheck-everything-running',
    'environmentcheck-found',
    'home-fixed-all',
    'home-history',
    'libreoffice-measured',
    'libreoffice-reset',
    'missingfonts-dropped',
    'missingfonts-found',
    'search-found',
    'server-success',
    'shortcuts-repaired',
    'sysinfo-environment',
    'updater-edited',
    'updater-log',
    'updater-runs',
];

const scenes = (await allScenes()).filter(
    ({ name, page }) =>
        page !== 'vyrNpEnvCheck.html' && (!name.includes('-') || further.includes(name)),
);

useBrowser();

/** What the view shows, in rem: places of texts, and of the controls in its cards. */
function places(view: Page) {
    return view.evaluate(() => {
        const rem = parseFloat(getComputedStyle(document.documentElement).fontSize);
        type Box = Record<'left' | 'right' | 'top' | 'bottom', number>;
        const boxed = ({ left, right, top, bottom }: DOMRect): Box => ({
            left: left / rem,
            right: right / rem,
            top: top / rem,
            bottom: bottom / rem,
        });
        const main = document.querySelector('main')!;
        const walker = document.createTreeWalker(main, NodeFilter.SHOW_TEXT);
        const texts: { text: string; parent: Element; box: Box }[] = [];
        for (let node = walker.nextNode(); node; node = walker.nextNode()) {
            const parent = node.parentElement!;
            const text = node.textContent!.trim();
            if (!text || parent.closest('.screen-reader-only')) continue;
            const range = document.createRange();
            range.selectNodeContents(node);
            for (const box of range.getClientRects()) {
                if (box.width > 2) texts.push({ text, parent, box: boxed(box) });
            }
        }
        const inRow = (one: Box, other: Box) => one.bottom > other.top && other.bottom > one.top;
        const gap = (one: Box, other: Box) =>
            Math.max(0, one.left - other.right, other.left - one.right);
        // What concerns the whole view stands at the end of its first line; a header sorts its
        // column; a card that is a button has its text in itself.
        const controls = [...main.querySelectorAll('button, input, select, textarea')]
            .filter((control) => !control.closest('.tool-page-actions, thead, button.card'))
            .map((control) => ({ control, box: boxed(control.getBoundingClientRect()) }))
            .filter(({ box }) => box.right - box.left > 0.2);
        /** A control and those beside it, which belong together. */
        function groupOf(first: (typeof controls)[0]) {
            const group = [first];
            for (const member of group) {
                group.push(
                    ...controls.filter(
                        (other) =>
                            !group.includes(other) &&
                            inRow(member.box, other.box) &&
                            gap(member.box, other.box) <= 3,
                    ),
                );
            }
            return group;
        }
        const distances = controls.map((one) => {
            const card = one.control.closest('.card') ?? main;
            const beside = texts.filter(
                ({ parent }) =>
                    card.contains(parent) && !parent.closest('button, select, textarea'),
            );
            const group = groupOf(one);
            const gaps = group.flatMap((member) =>
                beside
                    .filter(({ box }) => inRow(box, member.box))
                    .map(({ box }) => gap(box, member.box)),
            );
            // Where its row has no text, it is below what it belongs to.
            // The view's own margins are no place for anything.
            const margin = (innerWidth / rem - 62) / 2;
            const indent =
                Math.min(...group.map(({ box }) => box.left)) -
                Math.max(boxed(card.getBoundingClientRect()).left, margin);
            const name = one.control.getAttribute('aria-label') ?? one.control.textContent!.trim();
            return {
                name,
                distance: gaps.length ? Math.min(...gaps) : indent,
                inRow: !!gaps.length,
            };
        });
        return { texts: texts.map(({ text, box }) => ({ text, box })), distances };
    });
}

describe('in a wide window', () => {
    it.concurrent.each(scenes)('$name keeps together what belongs together', async (scene) => {
        const width = 1920;
        const view = await open(scene, { width, height: 1080 });
        await scene.act?.(view);
        await view.getByText(scene.shows).waitFor();
        const { texts, distances } = await places(view);
        expect(texts.length).toBeGreaterThan(2);
        // A line of 62 rem at most, in the middle.
        const outside = texts
            .filter(
                ({ box }) =>
                    box.left < (width / 16 - 62) / 2 - 1 || box.right > (width / 16 + 62) / 2 + 1,
            )
            .map(({ text }) => text);
        expect(outside).toEqual([]);
        const far = distances
            .filter(({ distance, inRow }) => distance > (inRow ? 20 : 5))
            .map(({ name, distance }) => `${name}: ${Math.round(distance)} rem`);
        expect(far).toEqual([]);
        await view.close();
    });
});
