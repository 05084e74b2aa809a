// How smoothly the search view draws while hits stream in.

import { shellOn, withPage } from './devtools.mjs';

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

/** Streams the hits in; gives the longest gap between two frames, and the page's text. */
const streamHits = `new Promise((resolve) => {
    const base64 = (text) => btoa(String.fromCharCode(...new TextEncoder().encode(text)));
    let longest = 0;
    let last = performance.now();
    let sent = 0;
    let streaming = true;
    const frame = (now) => {
        longest = Math.max(longest, now - last);
        last = now;
        if (streaming) requestAnimationFrame(frame);
        else setTimeout(() => resolve({ longest, text: document.body.innerText }), 500);
    };
    requestAnimationFrame((now) => { last = now; requestAnimationFrame(frame); });
    const send = () => {
        for (const end = Math.min(sent + ${hitsInBatch}, ${hitCount}); sent < end; sent++) {
            window.startsearchfileCallBack({ result: {
                [base64('report 报告 ' + sent + '.docx')]: base64('/home/user/' + (sent % 1000)),
            } });
        }
        if (sent < ${hitCount}) { setTimeout(send, 0); return; }
        window.searchfilefinish({ result: 'success' });
        streaming = false;
    };
    send();
})`;

/** Milliseconds of the longest frame while all hits stream into the search view. */
function streamOnce(shell, env) {
    const start = shellOn(shell, { env, args: ['--page', 'search.html', '--language', 'en'] });
    return withPage(start, async (page) => {
        await page.addInitScript(silentHost);
        await page.reload();
        await page.evaluate(startSearch);
        const { longest, text } = await page.evaluate(streamHits);
        if (!text.includes(`${hitCount.toLocaleString('en')} found`)) {
            throw new Error(`not all hits have arrived: ${text}`);
        }
        return longest;
    });
}

/** The best of several rounds: other work on the machine only makes frames longer. */
export async function longestFrame(shell, env) {
    const rounds = [];
    while (rounds.length < mostRounds) rounds.push(await streamOnce(shell, env));
    return Math.min(...rounds);
}
