import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { named, open, useBrowser } from './playing';

useBrowser();

/** The page that waits, with what the view of a scene asks its host. */
async function waiting(scene: string): Promise<Page> {
    const { answers } = named(scene);
    return open({ name: 'waiting', page: 'waiting.html', answers, shows: '' });
}

const show = (page: Page, name: string): Promise<boolean> =>
    page.evaluate((view) => window.showView!(view), name);

describe('the page that waits', () => {
    it('shows a view with its style', async () => {
        const page = await waiting('print');
        expect(await show(page, 'print.html')).toBe(true);
        await page.getByText('The suite prints the document that you choose').waitFor();
        await page.until(() => performance.getEntriesByName('view-mounted').length === 1);
        expect(await page.evaluate(() => location.hash + document.title)).toBe(
            '#print.htmlPrint problem',
        );
        const style = await page.evaluate(
            () => getComputedStyle(document.querySelector('.tool-page')!).display,
        );
        expect(style).toBe('flex');
        expect(page.complaints).toEqual([]);
        await page.close();
    });

    it('has rehearsed out of sight, and shows nothing of it', async () => {
        const page = await waiting('print');
        await page.until(() => document.querySelector('[src="tools.js"]') !== null);
        expect(
            await page.evaluate(() => [
                document.querySelectorAll('[src="rehearsal.js"]').length,
                document.querySelector('#view')!.childElementCount,
                performance.getEntriesByName('view-mounted').length,
            ]),
        ).toEqual([1, 0, 0]);
        expect(page.complaints).toEqual([]);
        await page.close();
    });

    it('shows one view at a time, and keeps what it has read', async () => {
        const page = await waiting('print');
        const style = (): Promise<string[]> =>
            page.evaluate(() =>
                [...document.querySelectorAll<HTMLLinkElement>('link[media=all]')].map(({ href }) =>
                    href.replace(/.*\//, ''),
                ),
            );
        const title = 'The suite prints the document that you choose';
        await show(page, 'print.html');
        await page.getByText(title).waitFor();
        await show(page, 'search.html');
        await page.locator('.search-keyword').waitFor();
        expect(await page.evaluate(() => document.body.innerText)).not.toContain(title);
        expect(await style()).toEqual(['search.css']);
        const scripts = await page.evaluate(() => document.scripts.length);

        expect(await page.evaluate(() => window.hideView!())).toBe(true);
        expect(await page.evaluate(() => document.body.innerText)).toBe('');
        expect(await page.evaluate(() => location.hash)).toBe('');
        expect(await style()).toEqual([]);
        expect(await page.evaluate(() => 'searchfilefinish' in window)).toBe(false);

        await show(page, 'print.html');
        await page.getByText(title).waitFor();
        expect(await page.evaluate(() => document.scripts.length)).toBeGreaterThanOrEqual(scripts);
        expect(await page.evaluate(() => document.querySelectorAll('h1').length)).toBe(1);
        expect(page.complaints).toEqual([]);
        await page.close();
    });

    it.each(['index.html', 'none.html', 'toString', '../print.html', ''])(
        'leaves %j to a document of its own',
        async (name) => {
            const page = await waiting('print');
            expect(await show(page, name)).toBe(false);
            expect(await page.evaluate(() => location.hash)).toBe('');
            await page.close();
        },
    );

    it('takes over the colours that were chosen while it waited', async () => {
        const page = await waiting('print');
        await page.evaluate(() =>
            localStorage.setItem('assistant.preferences', JSON.stringify({ theme: 'dark' })),
        );
        await show(page, 'print.html');
        expect(await page.evaluate(() => document.documentElement.classList.contains('dark'))).toBe(
            true,
        );
        await page.close();
    });
});
