import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { afterAll, beforeAll, beforeEach, expect, test } from 'vitest';

import { RemoteServer } from './remoteserver.mjs';
import { windowTests } from './windowtest.mjs';

const shared = windowTests();
let remote;
let program;
let page;
let outside;

beforeAll(async () => {
    remote = await RemoteServer.start();
    outside = path.join(shared.suite.home, 'outside.html');
    fs.writeFileSync(
        outside,
        '<title>outside</title>' +
            '<script>parent.postMessage({ loaded: "outside" }, "*")</script>',
    );
    fs.symlinkSync(outside, path.join(shared.suite.pages, 'link.html'));
    fs.writeFileSync(path.join(shared.suite.addon, 'officeassistant/resource/html2.html'), '');
});

afterAll(async () => remote?.stop());

beforeEach(async () => {
    program = await shared.start();
    page = await program.page();
});

/** The page is still the same one, with its bridge. */
async function expectStillHome() {
    // Once a later command is answered, anything under way has had its chance.
    await page.evaluate('new Promise((resolve) => setTimeout(resolve, 300))');
    expect(await page.evaluate('location.pathname + document.title')).toBe(
        `${path.join(shared.suite.pages, 'index.html')}Main page`,
    );
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
    expect(remote.connections).toBe(0);
}

/** @type {[string, () => string][]} */
const addresses = [
    ['a remote address', () => `http://${remote.place}/`],
    ['a remote address by name', () => 'https://example.invalid/'],
    ['a file outside', () => `file://${outside}`],
    ['a file outside by way of the page directory', () => shared.suite.pageUrl('../html2.html')],
    ['a file outside behind encoded dots', () => shared.suite.pageUrl('%2e%2e/html2.html')],
    ['a file outside behind an encoded slash', () => shared.suite.pageUrl('..%2fhtml2.html')],
    ['a symbolic link that leads outside', () => shared.suite.pageUrl('link.html')],
    ['the page directory itself', () => shared.suite.pageUrl('')],
    ['a page that does not exist', () => shared.suite.pageUrl('none.html')],
    ['a data address', () => 'data:text/html,<title>data</title>'],
    ['an inner page of Chromium', () => 'chrome://version'],
    ['the source of a page', () => `view-source:${shared.suite.pageUrl('index.html')}`],
];

test.each(addresses)('the page does not navigate to %s', async (_, address) => {
    await page.evaluate(`void (location.href = ${JSON.stringify(address())})`);
    await expectStillHome();
});

// The developer tools may view a source; a page may not.
const pageAddresses = addresses.filter(([name]) => name !== 'the source of a page');

test.each(pageAddresses)('the developer tools do not lead to %s', async (_, address) => {
    await page.tools.Page.navigate({ url: address() }).catch(() => {});
    await expectStillHome();
});

test('an empty document has no host, and the notice leads back to the page', async () => {
    await page.evaluate("void (location.href = 'about:blank')");
    await page.until("location.href === 'about:blank'");
    expect(await page.evaluate('typeof helio')).toBe('undefined');
    const command = JSON.stringify({ command: 'router', args: { page: 'child.html' } });
    const message = JSON.stringify({
        type: 6,
        id: 1,
        object: 'wire',
        method: 'fromJSAsynCall',
        args: [command],
    });
    await page.evaluate(`void qt.webChannelTransport.send(${JSON.stringify(message)})`);
    await waitFor(() => /was refused/.test(program.stderr), { what: 'the refusal' });
    const [window] = await shared.display.windowCount(1);
    await shared.reloadByKey(program, window);
});

test('forms, refreshes, downloads and new windows do not leave the page', async () => {
    await page.evaluate(`void (() => {
        const place = 'http://${remote.place}/';
        document.body.insertAdjacentHTML('beforeend', \`
            <form id="form" action="\${place}" method="post"></form>
            <a id="download" href="\${place}" download>download</a>
            <a id="blank" href="child.html" target="_blank">new window</a>\`);
        document.getElementById('form').submit();
        for (const id of ['download', 'blank'])
            document.getElementById(id).click();
        window.opened = window.open(place);
        const refresh = document.createElement('meta');
        refresh.httpEquiv = 'refresh';
        refresh.content = '0; url=' + place;
        document.head.append(refresh);
    })()`);
    await expectStillHome();
    expect(await page.evaluate('window.opened')).toBe(null);
    await shared.display.windowCount(1);
    expect(fs.existsSync(path.join(shared.suite.home, 'Downloads'))).toBe(false);
});

test('a page of our own is not downloaded', async () => {
    await page.evaluate(`void (() => {
        document.body.insertAdjacentHTML('beforeend', '<a href="child.html" download>page</a>');
        document.querySelector('a[download]').click();
    })()`);
    // Chromium 87 navigates to such a link; for a later one it is a download.
    if (/Chrome\/87\./.test(await page.evaluate('navigator.userAgent'))) {
        await page.until("location.pathname.endsWith('/child.html')");
    } else {
        await expectStillHome();
    }
    expect(fs.existsSync(path.join(shared.suite.home, 'Downloads'))).toBe(false);
});

test('nothing remote can be loaded or reached', async () => {
    await page.evaluate(`(async () => {
        const place = '${remote.place}';
        const quietly = (action) => { try { return action(); } catch { return null; } };
        for (const tag of ['img', 'script', 'iframe', 'video', 'embed'])
            document.body.append(
                Object.assign(document.createElement(tag), { src: 'http://' + place }));
        for (const rel of ['stylesheet', 'icon', 'preload', 'prefetch', 'preconnect'])
            document.head.append(Object.assign(document.createElement('link'),
                { rel, href: 'http://' + place, as: 'fetch' }));
        quietly(() => new WebSocket('ws://' + place));
        quietly(() => new EventSource('http://' + place));
        quietly(() => navigator.sendBeacon('http://' + place, 'x'));
        quietly(() => new Worker('http://' + place));
        await fetch('http://' + place, { mode: 'no-cors' }).catch(() => {});
    })()`);
    await page.evaluate('new Promise((resolve) => setTimeout(resolve, 500))');
    expect(remote.connections).toBe(0);
});

test('files outside of the page directory cannot be read', async () => {
    const outcome = await page.evaluate(`(async () => {
        const read = (address) => new Promise((resolve) => {
            const request = new XMLHttpRequest();
            request.onload = () => resolve('read');
            request.onerror = () => resolve('refused');
            try {
                request.open('GET', address);
                request.send();
            } catch { resolve('refused'); }
        });
        const image = (address) => new Promise((resolve) => {
            const element = new Image();
            element.onload = () => resolve('read');
            element.onerror = () => resolve('refused');
            element.src = address;
        });
        const script = (address) => new Promise((resolve) => {
            const element = document.createElement('script');
            element.onload = () => resolve('read');
            element.onerror = () => resolve('refused');
            element.src = address;
            document.body.append(element);
        });
        return [await read('file:///etc/passwd'),
            await image('file:///usr/share/pixmaps/debian-logo.png'),
            await script('file://${outside}'), await script('main.js')];
    })()`);
    expect(outcome).toEqual(['refused', 'refused', 'refused', 'read']);
});

test('a frame of the page directory has no bridge', async () => {
    const report = await page.evaluate(`new Promise((resolve) => {
        addEventListener('message', ({ data }) => resolve(data));
        document.body.append(
            Object.assign(document.createElement('iframe'), { src: 'frame.html' }));
    })`);
    expect(report).toEqual({ helio: 'undefined', channel: 'undefined', transport: 'undefined' });
});

test.each([
    ['a remote page', () => `http://${remote.place}/`],
    ['a file outside', () => `file://${outside}`],
    ['a symbolic link that leads outside', () => shared.suite.pageUrl('link.html')],
    ['a data address', () => 'data:text/html,<script>parent.postMessage("data", "*")</script>'],
])('a frame does not show %s', async (_, address) => {
    const outcome = await page.evaluate(`new Promise((resolve) => {
        addEventListener('message', ({ data }) => resolve(data));
        document.body.append(Object.assign(document.createElement('iframe'),
            { src: ${JSON.stringify(address())} }));
        setTimeout(resolve, 500, 'nothing');
    })`);
    expect(outcome).toBe('nothing');
    await expectStillHome();
});

test('another page of the directory has the bridge', async () => {
    await page.evaluate("void (location.href = 'child.html?x=1#part')");
    await page.until("document.title === 'Child page' && Boolean(window.helio)");
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
});

test('a page asks for no permission that it could get', async () => {
    expect(await page.evaluate('Notification.requestPermission()')).not.toBe('granted');
    const place = await page.evaluate(`new Promise((resolve) => navigator.geolocation
        .getCurrentPosition(() => resolve('told'), () => resolve('refused')))`);
    expect(place).toBe('refused');
});

/** The local addresses on which a process listens, as in /proc/net/tcp. */
function listeningAddresses(pid) {
    const inodes = fs.readdirSync(`/proc/${pid}/fd`).map((fd) => {
        try {
            return /^socket:\[(\d+)\]$/.exec(fs.readlinkSync(`/proc/${pid}/fd/${fd}`))?.[1];
        } catch {
            return undefined; // closed meanwhile
        }
    });
    return ['/proc/net/tcp', '/proc/net/tcp6']
        .flatMap((table) => fs.readFileSync(table, 'utf8').split('\n'))
        .map((line) => line.trim().split(/\s+/))
        .filter((fields) => fields[3] === '0A' && inodes.includes(fields[9]))
        .map((fields) => fields[1].split(':')[0]);
}

test('the developer tools are there when asked for, on the loopback interface only', async () => {
    expect(listeningAddresses(program.pid)).toEqual(['0100007F']);
    const env = { QTWEBENGINE_REMOTE_DEBUGGING: '9199' };
    const quiet = await shared.start([], { debug: false, env });
    await shared.display.windowCount(2);
    await waitFor(() => quiet.renderers().length > 0, { what: 'the page' });
    expect(listeningAddresses(quiet.pid)).toEqual([]);
});
