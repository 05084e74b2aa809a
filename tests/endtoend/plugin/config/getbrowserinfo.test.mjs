import { afterEach, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { runScript } from './scriptrunner.mjs';

const knownBrowsers = [
    'firefox',
    'google-chrome',
    'chromium-browser',
    'uos-browser',
    'browser360-cn',
    'qaxbrowser-safe',
];
const packages = `Desired=Unknown/Install
||/ Name                     Version      Architecture Description
+++-========================-============-============-===========
ii  browser360-cn-stable     13.4.1-1     amd64        a browser
ii  lib360:amd64             2.0          amd64        help for it
rc  browser360-old           1.0          amd64        removed
iU  browser360-new           3.0          amd64        half there
ii  firefox-esr              128.0        amd64        another
ii  com.qianxi.browser       1.2.3        amd64        a third
rc  com.qianxi.old           0.1          amd64        removed
`;

let root;

afterEach(async () => root.dispose());

async function makeRoot() {
    root = await SandboxRoot.create({ hide: knownBrowsers.map((name) => `/usr/bin/${name}`) });
    await root.recordingFake('dpkg', { output: '' });
}

const fakeBrowser = (name, output) => root.recordingFake(name, { output });
const browsers = async () => (await runScript(root, 'getbrowserinfo.sh')).stdout;

test('no browser prints nothing, after both looks at the packages', async () => {
    await makeRoot();
    expect(await runScript(root, 'getbrowserinfo.sh')).toMatchObject({ stdout: '', stderr: '' });
    expect(await root.callsOf('dpkg')).toEqual([['-l'], ['-l']]);
});

test('all browsers are listed in order, each asked once for its version', async () => {
    await makeRoot();
    for (const name of [...knownBrowsers].reverse()) await fakeBrowser(name, `${name} 1.0\n`);
    expect(await browsers()).toBe(knownBrowsers.map((name) => `${name} 1.0\n`).join(''));
    for (const name of knownBrowsers) expect(await root.callsOf(name)).toEqual([['--version']]);
    expect(await root.callsOf('dpkg')).toEqual([]);
});

test.each(knownBrowsers)('%s alone is found', async (name) => {
    await makeRoot();
    await fakeBrowser(name, `${name} 2.0\n`);
    expect(await browsers()).toBe(`${name} 2.0\n`);
});

test('a version is one line with single blanks, and a star in it stays a star', async () => {
    await makeRoot();
    await root.writeFile('/home/user/file', '');
    await fakeBrowser('firefox', '  Mozilla   Firefox\t128 \n *  beta\n');
    expect(await browsers()).toBe('Mozilla Firefox 128 * beta\n');
});

test('a browser that prints nothing gives an empty line', async () => {
    await makeRoot();
    await root.fake('firefox', '#!/bin/bash\necho broken >&2\nexit 1\n');
    expect(await browsers()).toBe('\n');
});

test('without the two programs, installed packages of theirs are printed', async () => {
    await makeRoot();
    await root.recordingFake('dpkg', { output: packages });
    expect(await browsers()).toBe(
        'browser360-cn-stable 13.4.1-1\nlib360:amd64 2.0\ncom.qianxi.browser 1.2.3\n',
    );
});

test('a program found keeps its packages from being printed, and only its own', async () => {
    await makeRoot();
    await root.recordingFake('dpkg', { output: packages });
    await fakeBrowser('browser360-cn', '360 13.4\n');
    expect(await browsers()).toBe('360 13.4\ncom.qianxi.browser 1.2.3\n');
});
