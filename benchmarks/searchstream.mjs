// How smoothly the search view draws while hits stream in.

import { shellOn, withPage } from './devtools.mjs';
import { median } from './measure.mjs';

const hitCount = 100_000;
/** Batches arrive in separate tasks, as from another process, so that frames are drawn between. */
const hitsInBatch = 100;
const mostRounds = 3;

/**
 * Replaces the host with a property that the real one cannot overwrite. The library never sees the
 * search, so that only our own hits arrive.
 */
const silentHost = `Object.defineProperty(window, 'helio', {
    value: { call: () => Promise.resolve({ result: 'success' }), theme: 'light', language: 'en' },
    configurable: false,
});`;

/** Starts a search in the view. */
const startSearch = `new Promise((resolve) => {
    const look = () => {
        const field = document.querySelector('.search-keyword input');
        if (!field) { setTimeout(look, 10); return; }
        field.value = 'report';
        field.dispatchEvent(new Event('input', { bubbles: true }));
        setTimeout(() => {
            field.form.requestSubmit();
            setTimeout(resolve, 500);
        }, 100);
    };
    look();
})`;

/** Counts the frames from now on, until `frames.end()` gives the gaps between them. */
const watchFrames = `
    const frames = (() => {
        const gaps = [];
        let last;
        let watching = true;
        const frame = (now) => {
            if (last !== undefined) gaps.push(now - last);
            last = now;
            if (watching) requestAnimationFrame(frame);
        };
        requestAnimationFrame(frame);
        return { end() { watching = false; return gaps; } };
    })();`;

/** Streams the hits in, in no order; gives the gaps between frames, and the page's text. */
const streamHits = `new Promise((resolve) => {
    const base64 = (text) => btoa(String.fromCharCode(...new TextEncoder().encode(text)));
    ${watchFrames}
    let sent = 0;
    const send = () => {
        for (const end = Math.min(sent + ${hitsInBatch}, ${hitCount}); sent < end; sent++) {
            const number = (sent * 7919) % ${hitCount};
            window.startsearchfileCallBack({ result: {
                [base64('report 报告 ' + number + '.docx')]: base64('/home/user/' + (sent % 1000)),
            } });
        }
        if (sent < ${hitCount}) { setTimeout(send, 0); return; }
        window.searchfilefinish({ result: 'success' });
        const gaps = frames.end();
        setTimeout(() => resolve({ gaps, text: document.body.innerText }), 500);
    };
    send();
})`;

/** Sorts the hits by name, the last first; gives the gaps between frames, and how long it took. */
const sortHits = `new Promise((resolve) => {
    const press = () => document.querySelector('.hit-columns .hit-name').click();
    const last = 'report 报告 ' + (${hitCount} - 1) + '.docx';
    ${watchFrames}
    const begin = performance.now();
    press();
    setTimeout(() => {
        press();
        const look = () => {
            if (document.querySelector('.hit-scroller').innerText.includes(last)) {
                resolve({ gaps: frames.end(), whole: performance.now() - begin });
            } else requestAnimationFrame(look);
        };
        look();
    });
})`;

/** Gaps between frames while all hits stream into the search view, and then are sorted. */
function streamOnce(shell, env) {
    const start = shellOn(shell, { env, args: ['--page', 'search.html', '--language', 'en'] });
    return withPage(start, async (page) => {
        await page.addInitScript(silentHost);
        await page.reload();
        await page.evaluate(startSearch);
        const { gaps, text } = await page.evaluate(streamHits);
        if (!text.includes(`${hitCount.toLocaleString('en')} found`)) {
            throw new Error(`not all hits have arrived: ${text}`);
        }
        return { streaming: gaps, sorting: await page.evaluate(sortHits) };
    });
}

/** Gaps between the frames of a page at rest, for as long as hits stream in. */
const restFrames = `new Promise((resolve) => {
    ${watchFrames}
    setTimeout(() => resolve(frames.end()), 3000);
})`;

/** Milliseconds; the best of several rounds: other work on the machine only makes them longer. */
export async function searchFrames(shell, bareStart, env) {
    const rounds = [];
    while (rounds.length < mostRounds) {
        const rest = await withPage(bareStart, (page) => page.evaluate(restFrames));
        rounds.push({ ...(await streamOnce(shell, env)), rest });
    }
    const best = (valueOf) => Math.min(...rounds.map(valueOf));
    return {
        longestStreaming: best(({ streaming }) => Math.max(...streaming)),
        medianStreaming: best(({ streaming }) => median(streaming)),
        longestSorting: best(({ sorting }) => Math.max(...sorting.gaps)),
        sorting: best(({ sorting }) => sorting.whole),
        restLongest: best(({ rest }) => Math.max(...rest)),
    };
}
