import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { lastSent, named, open, play, sent, useBrowser } from './playing';

useBrowser();

/** The texts of a column, from the top. */
const column = (view: Page, selector: string) => view.locator(selector).allTextContents();

describe('dates and figures', () => {
    /** The dates of the dumps, and then those of the history of check-ups. */
    async function shownDates(language: string): Promise<string[]> {
        const dumps = await open(named('crash'), { language });
        await dumps.getByText('SIGSEGV').waitFor();
        const dates = await column(dumps, 'main tbody tr > :first-child');
        await dumps.close();
        const history = await open(named('home-history'), { language });
        await history.locator('.history-start').click();
        const looks = history.locator('.history-looks li', { nth: 0 });
        await looks.waitFor();
        dates.push(...(await looks.allTextContents()));
        await history.close();
        return dates.map((text) => text.trim());
    }

    it('are those of the language of the window', async () => {
        const english = await shownDates('en_US');
        expect(english[0]).toMatch(/^Mar 1, 2024/);
        expect(english.pop()).toMatch(/^Mar 4, 2026/);
        const chinese = await shownDates('zh_CN');
        expect(chinese[0]).toMatch(/^2024年3月1日/);
        expect(chinese.pop()).toMatch(/^2026年3月4日/);
    });
});

describe('a check-up with the same outcome as before', () => {
    it('says since when', () => {
        const before = '2024-03-01T10:20:30Z';
        const unchanged = { since: before, last: before, fixed: [], appeared: [] };
        const scene = named('home-well');
        const look = scene.answers!['doctor.look'];
        return play(
            named('home-well', {
                'doctor.look': {
                    ...look,
                    result: { ...(look as { result: object }).result, ...unchanged },
                },
            }),
            async (view) => {
                await view.getByText(/Unchanged since Mar 1, 2024/).waitFor();
            },
        );
    });
});

describe('what was checked some time ago', () => {
    it('is marked in the environment check', () =>
        play(named('environmentcheck'), async (view) => {
            await view.getByText(/^Checked at/).waitFor();
            await view.getByText('which may be out of date').waitForNone();
            await view.advanceTime(32 * 60_000);
            await view.getByText('which may be out of date').waitFor();
        }));
});

describe('the list of programs', () => {
    it('is sorted by its headers, both ways', () =>
        play(named('processes'), async (view) => {
            const names = () => column(view, '.program-panel tbody .program-name');
            const header = (name: string) => view.locator('.sort-button', { hasText: name });
            const bySize = await names();
            expect(bySize.slice(0, 2)).toEqual(['LibreOffice', 'Chromium']);
            await header('Program').click();
            const byName = await names();
            expect(byName).toEqual([...bySize].sort((one, two) => one.localeCompare(two)));
            await header('Program').click();
            expect(await names()).toEqual([...byName].reverse());
            await header('Memory').click();
            expect(await names()).toEqual(bySize);
        }));
});

describe('the system report', () => {
    it('is copied as Markdown and as JSON, without what looks secret', () =>
        play(named('sysinfo-environment'), async (view) => {
            for (const [index, name] of ['Copy as Markdown', 'Copy as JSON'].entries()) {
                await view.locator('button', { named: name }).click();
                await sent(view, 'copytoclipboard', index + 1);
                const copied = String((await lastSent(view))[0]!.args!.verification);
                expect(copied).toMatch(/GTK.{1,2}IM.{1,2}MODULE/);
                expect(copied).not.toMatch(/abcdef|user:pass/);
            }
        }));
});

describe('icons', () => {
    it.each([
        ['associations', 37],
        ['shortcuts-pictured', 4],
        ['processes', 2],
    ])('of the desktop are shown in %s', (name, count) =>
        play(named(name), async (view) => {
            const drawn = await view.evaluate(
                () =>
                    [...document.querySelectorAll<HTMLImageElement>('main img')].filter(
                        (image) => image.complete && image.naturalWidth > 0,
                    ).length,
            );
            expect(drawn).toBe(count);
        }),
    );
});
