import { Chromium, type Page } from 'browser-driver';
import { afterAll, afterEach, beforeAll, beforeEach, describe, expect, inject, it } from 'vitest';
import { openView } from './harness.mjs';

const hitCount = 100_000;
const mostMs = 300_000;

let browser: Chromium;
let page: Page;
beforeAll(async () => {
    browser = await Chromium.start();
});
afterAll(() => browser.close());

/**
 * Hits in many small tasks, as the host's wire delivers them; the end after the last. Base64 of
 * three bytes each is put together from a table, so that making the hits costs next to nothing.
 */
async function streamHits(count: number): Promise<void> {
    const hitsInTask = 5;
    const base64 = (text: string): string =>
        btoa(String.fromCharCode(...new TextEncoder().encode(text)));
    const digits = Array.from({ length: 1000 }, (_, index) =>
        base64(String(index).padStart(3, '0')),
    );
    const [before, after, folder] = [base64('report 报告 N'), base64('.docx'), base64('/home/us/')];
    const { port1, port2 } = new MessageChannel();
    let sent = 0;
    const deliver = (): void => {
        const number = (sent * 7919) % count;
        const name = `${before}${digits[Math.floor(number / 1000)]}${digits[number % 1000]}${after}`;
        const directory = `${folder}${digits[Math.floor(sent / 100) % 1000]}`;
        window.startsearchfileCallBack?.({ result: { [name]: directory } });
        sent += 1;
    };
    await new Promise<void>((resolve) => {
        port2.onmessage = () => {
            for (const end = Math.min(sent + hitsInTask, count); sent < end; ) deliver();
            if (sent < count) {
                port1.postMessage(0);
            } else {
                window.searchfilefinish?.({ result: 'success' });
                resolve();
            }
        };
        port1.postMessage(0);
    });
}

/** The search view with a search under way. */
async function openSearch(): Promise<Page> {
    const view = await openView(browser, inject('builtPage'), {
        page: 'search.html',
        answers: { startsearchfile: {} },
    });
    await view.locator('.search-keyword input').fill('report');
    await view.keyboard.press('Enter');
    await view.until(() => (window as unknown as { sent: unknown[] }).sent.length > 0);
    return view;
}

async function complete(): Promise<void> {
    await page.getByText('Search complete.').waitFor({ timeoutMs: 120_000 });
}

/** Scrolls on in each frame from now on, and counts the frames. */
function keepScrolling(): void {
    const scroll = (): void => {
        const rows = document.querySelector<HTMLElement>('.hit-scroller');
        if (rows) {
            rows.scrollTop = (rows.scrollTop + 400) % 400_000;
            rows.dataset.frames = String(Number(rows.dataset.frames ?? 0) + 1);
        }
        requestAnimationFrame(scroll);
    };
    requestAnimationFrame(scroll);
}

beforeEach(async () => {
    page = await openSearch();
});
afterEach(() => page.close());

describe('100,000 hits', () => {
    it(
        'arrive while the page goes on drawing and is scrolled',
        async () => {
            await page.evaluate(keepScrolling);
            await page.evaluate(streamHits, hitCount, { timeoutMs: mostMs });
            const frames = await page.locator('.hit-scroller').getAttribute('data-frames');
            await complete();
            await page.getByText('100,000 found').waitFor();
            expect(Number(frames)).toBeGreaterThan(5);
        },
        mostMs,
    );

    it(
        'arrive into a list that is being sorted and filtered',
        async () => {
            const stream = page.evaluate(streamHits, hitCount, { timeoutMs: mostMs });
            await page.locator('.search-results').waitFor();
            await page.locator('.hit-columns .hit-name').click();
            await page.locator('.search-filter input').fill('docx 9');
            await stream;
            await complete();
            await page.getByText('of 100,000').waitFor();
        },
        mostMs,
    );

    it(
        'are sorted and filtered once they are there',
        async () => {
            await page.evaluate(streamHits, hitCount, { timeoutMs: mostMs });
            await complete();
            await page.locator('.hit-columns .hit-name').click();
            await page.getByText('report 报告 N000000.docx').waitFor({ timeoutMs: 60_000 });
            await page.locator('.search-filter input').fill('N099999');
            await page.getByText('1 of 100,000').waitFor({ timeoutMs: 60_000 });
        },
        mostMs,
    );
});
