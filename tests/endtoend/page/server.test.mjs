import { once } from 'node:events';
import http from 'node:http';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.server;
const shared = viewTests();
let server;
let requests;

beforeEach(async () => {
    requests = [];
    server = http
        .createServer((request, response) => {
            request.resume().on('end', () => {
                requests.push(request);
                response.statusCode = request.url === '/good' ? 200 : 404;
                response.end('<b>nothing here</b>');
            });
        })
        .listen(0, '127.0.0.1');
    await once(server, 'listening');
});

afterEach(async () => {
    server.close();
    server.closeAllConnections();
    await once(server, 'close');
});

async function send(where) {
    const { view } = await shared.open('server');
    await view.shows(texts.noUrl);
    await view.fill(texts.url, `http://127.0.0.1:${server.address().port}${where}`);
    await view.press(texts.headers.add);
    await view.fill(texts.headers.name.replace('{number}', '1'), 'X-Asked');
    await view.fill(texts.headers.value.replace('{number}', '1'), 'by the view');
    await view.shows('X-Asked: by the view');
    await view.press(texts.send);
    return view;
}

test('the server sees the request that the view showed, and its answer is judged', async () => {
    const view = await send('/good');
    await view.shows(texts.meanings.good, patience);
    // curl is what tests need, so the window has times, and the number of the server.
    await view.shows(texts.times.firstByte);
    await view.shows('HTTP/1.1 200, 127.0.0.1');
    await view.shows(texts.history.title);
    expect(requests).toHaveLength(1);
    expect(requests[0]).toMatchObject({
        method: 'GET',
        url: '/good',
        headers: { 'x-asked': 'by the view' },
    });
});

test('a refusal is explained, and its body is shown as text, not HTML', async () => {
    const view = await send('/none');
    await view.shows(texts.meanings.notFound.replace('{status}', '404'), patience);
    await view.shows('<b>nothing here</b>');
    expect(await view.evaluate("document.querySelectorAll('.answer-body b').length")).toBe(0);
});
