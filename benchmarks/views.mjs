// Figures of the HTML application's views, in the real window with the library behind it.

import { readdirSync, readFileSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { bareViewOn, firstPaint, pageOf, shellOn, withPage } from './devtools.mjs';
import { bounded, compare, figure, median } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';
import { searchFrames } from './searchstream.mjs';

const paintRounds = 7;
const openingRounds = 3;
const longestOpeningMs = 100;
/** From the pointer's arrival on a tile until the click. A hand takes longer. */
const pointingMs = 100;
const largestViewKB = 400;
/** Sixty frames a second, and what a clock without fractions adds. */
const frameMs = 17;
/** One frame that was left out is seen by nobody. */
const longestFrameMs = 34;
const longestSortMs = 1000;

/** What all views share: the libraries, and the modules of several views. */
const sharedFiles = /^(foundation|elements|frame|toolframe)\.(js|css)$/;

/** The home page, and the page that a hidden window shows until its first view. */
const notViews = /\/(index|waiting)\.html$/;

/** An empty page. It has a colour because Chromium reports no paint for one without. */
const blankPage = '<!DOCTYPE html><title>Blank</title><body style="background: #f6f7f9"></body>\n';

function paintAfterStart(start) {
    return withPage(
        start,
        async (page, { startedAt }) => (await page.evaluate(firstPaint)) - startedAt,
    );
}

async function firstPaintFigures(shell, bareView) {
    return withPrivateHome(async (env, home) => {
        const blank = join(home, 'blank.html');
        writeFileSync(blank, blankPage);
        const against = (args) =>
            compare(
                paintRounds,
                () => paintAfterStart(shellOn(shell, { env, args })),
                () => paintAfterStart(bareViewOn(bareView, blank, { env })),
            );
        const name = 'first paint of the home page, against a blank page';
        return [
            figure(name, 'ms', await against([]), 1.05),
            figure(`${name} drawn alike`, 'ms', await against(['--graphics', 'device']), null),
        ];
    });
}

/** The middle of a tile, once the home page shows its tiles. */
const placeOfTile = (index) => `new Promise((resolve) => {
    const look = () => {
        const tile = document.querySelectorAll('button.tool')[${index}];
        if (!tile) { setTimeout(look, 10); return; }
        tile.scrollIntoView({ block: 'center' });
        window.addEventListener('click', (event) => {
            window.clickedAt = performance.timeOrigin + event.timeStamp;
        }, true);
        const box = tile.getBoundingClientRect();
        // Start-up work must not count as part of opening the view.
        setTimeout(() => resolve({ x: box.x + box.width / 2, y: box.y + box.height / 2 }), 1000);
    };
    look();
})`;

/**
 * A view is interactive when the page has been painted and the view is mounted: its controls are in
 * the page and react, which it marks as “view-mounted”.
 */
const interactiveAt = `new Promise((resolve) => {
    const look = () => {
        const paint = performance.getEntriesByName('first-contentful-paint')[0];
        const mark = performance.getEntriesByName('view-mounted')[0];
        const mounted = document.querySelector('#view button:not(:disabled)');
        if (paint && mark && mounted)
            resolve(performance.timeOrigin + Math.max(paint.startTime, mark.startTime));
        else setTimeout(look, 10);
    };
    look();
})`;

const pointing = () => new Promise((resolve) => setTimeout(resolve, pointingMs));

/** Milliseconds from the click on a tile until its view is interactive, and the view's page. */
function opening(shell, env, index) {
    return withPage(shellOn(shell, { env }), async (home, { port }) => {
        const place = await home.evaluate(placeOfTile(index));
        await home.pointAt(place);
        await pointing();
        await home.clickAt(place);
        const view = await pageOf(port, (url) => !notViews.test(url));
        try {
            const end = await view.evaluate(interactiveAt);
            return {
                name: await view.evaluate("location.href.split(/[/#]/).pop().replace('.html', '')"),
                time: end - (await home.evaluate('window.clickedAt')),
            };
        } finally {
            await view.close();
        }
    });
}

/** A page whose button leads to a page with a button, which is all that there is to see. */
const leadingPage = (page) => `<!DOCTYPE html><title>Leading</title>
<button onclick="window.name = performance.timeOrigin + event.timeStamp; location = '${page}'">
Open</button>\n`;
const openedPage = '<!DOCTYPE html><title>Opened</title><button>Close</button>\n';

/** The same from a click in a bare view until the bare page that it leads to is painted. */
async function bareOpening(bareView, home, env) {
    const leading = join(home, 'leading.html');
    writeFileSync(leading, leadingPage('opened.html'));
    writeFileSync(join(home, 'opened.html'), openedPage);
    return withPage(bareViewOn(bareView, leading, { env }), async (page, { port }) => {
        const place = await page.evaluate(`new Promise((resolve) => setTimeout(() => {
            const box = document.querySelector('button').getBoundingClientRect();
            resolve({ x: box.x + box.width / 2, y: box.y + box.height / 2 });
        }, 1000))`);
        await page.pointAt(place);
        await pointing();
        await page.clickAt(place);
        const opened = await pageOf(port, (url) => url.endsWith('/opened.html'));
        try {
            return (await opened.evaluate(firstPaint)) - (await opened.evaluate('Number(name)'));
        } finally {
            await opened.close();
        }
    });
}

async function openingFigures(shell, bareView) {
    return withPrivateHome(async (env, home) => {
        const count = await withPage(shellOn(shell, { env }), async (page) => {
            await page.evaluate(placeOfTile(0));
            return page.evaluate("document.querySelectorAll('button.tool').length");
        });
        const figures = [];
        const bare = [];
        for (let index = 0; index < count; index++) {
            const openings = [];
            for (let round = 0; round < openingRounds; round++) {
                openings.push(await opening(shell, env, index));
            }
            bare.push(await bareOpening(bareView, home, env));
            figures.push(
                bounded(
                    `click until the view ${openings[0].name} is interactive`,
                    'ms',
                    median(openings.map(({ time }) => time)),
                    longestOpeningMs,
                ),
            );
        }
        const [ours, peer] = [median(figures.map((view) => view.ours)), median(bare)];
        const against = 'click until a view is interactive, against a bare page';
        return [...figures, figure(against, 'ms', { ours, peer, ratio: ours / peer }, null)];
    });
}

/** Has a page say when the next view of it was drawn, as `viewDrawn`. */
const watchDrawing = `void (window.viewDrawn = new Promise((resolve) => {
    new PerformanceObserver((list, observer) => {
        if (!list.getEntriesByName('view-mounted').length) return;
        observer.disconnect();
        requestAnimationFrame(() =>
            setTimeout(() => resolve(performance.timeOrigin + performance.now())));
    }).observe({ type: 'mark' });
}))`;

/** The middle of an entry of the list beside a view. */
const placeOfEntry = (index) => `(() => {
    const entry = document.querySelectorAll('.side-bar li button')[${index}];
    entry.scrollIntoView({ block: 'center' });
    const box = entry.getBoundingClientRect();
    return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
})()`;

/** From the click on another tool beside a view until that is drawn, for each tool in turn. */
async function switchingFigure(shell) {
    const times = await withPrivateHome((env) =>
        withPage(shellOn(shell, { env }), async (home, { port }) => {
            await home.clickAt(await home.evaluate(placeOfTile(0)));
            const view = await pageOf(port, (url) => !notViews.test(url));
            await view.evaluate(interactiveAt);
            const count = await home.evaluate(
                "document.querySelectorAll('.side-bar li button').length",
            );
            const all = [];
            for (let index = 1; index < count; index++) {
                const place = await home.evaluate(placeOfEntry(index));
                await view.evaluate(watchDrawing);
                await home.clickAt(place);
                const end = await view.evaluate('viewDrawn');
                all.push(end - (await home.evaluate('window.clickedAt')));
            }
            await view.close();
            return all;
        }),
    );
    return bounded(
        'click until another view has taken the place of one',
        'ms',
        median(times),
        longestOpeningMs,
    );
}

/** The view with the most script and style of its own: {name, size} in KB. */
function largestView(directory) {
    const views = readdirSync(directory)
        .filter((name) => name.endsWith('.html'))
        .map((name) => {
            const page = readFileSync(join(directory, name), 'utf8');
            const files = [...page.matchAll(/(?:src|href)="([^":]+\.(?:js|css))"/g)].map(
                ([, file]) => file,
            );
            const inline = [...page.matchAll(/<(script|style)[^>]*>([^]*?)<\/\1>/g)].reduce(
                (sum, [, , text]) => sum + Buffer.byteLength(text),
                0,
            );
            const own = files.filter((file) => !sharedFiles.test(file));
            const bytes = own.reduce(
                (sum, file) => sum + statSync(join(directory, file)).size,
                inline,
            );
            return { name, size: bytes / 1000 };
        });
    return views.reduce((largest, view) => (view.size > largest.size ? view : largest));
}

/** @param {{shell: string, bareView: string, htmlDirectory: string}} programs */
export async function viewFigures({ shell, bareView, htmlDirectory }) {
    const { name, size } = largestView(htmlDirectory);
    return [
        bounded(`script and style of the largest view, ${name}`, 'KB', size, largestViewKB),
        ...(await firstPaintFigures(shell, bareView)),
        ...(await openingFigures(shell, bareView)),
        await switchingFigure(shell),
        ...(await searchFigures(shell, bareView)),
    ];
}

async function searchFigures(shell, bareView) {
    return withPrivateHome(async (env, home) => {
        const blank = join(home, 'blank.html');
        writeFileSync(blank, blankPage);
        const frames = await searchFrames(shell, bareViewOn(bareView, blank, { env }), env);
        const against = (name, ours, peer) =>
            figure(
                `${name}, against a page at rest`,
                'ms',
                { ours, peer, ratio: ours / peer },
                null,
            );
        return [
            ...[
                ['median frame while 100,000 hits stream in', frames.medianStreaming, frameMs],
                [
                    'longest frame while 100,000 hits stream in',
                    frames.longestStreaming,
                    longestFrameMs,
                ],
                [
                    'longest frame while 100,000 hits are sorted',
                    frames.longestSorting,
                    longestFrameMs,
                ],
                ['100,000 hits sorted by name', frames.sorting, longestSortMs],
            ].map(([name, value, limit]) => bounded(`${name}, best of three`, 'ms', value, limit)),
            against(
                'longest frame while hits stream in',
                frames.longestStreaming,
                frames.restLongest,
            ),
            against(
                'longest frame while hits are sorted',
                frames.longestSorting,
                frames.restLongest,
            ),
        ];
    });
}
