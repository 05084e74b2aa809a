/** Draws every view with a scripted host, in both themes and languages. */
import { mkdir, readdir } from 'node:fs/promises';
import { join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { parseArgs } from 'node:util';
import { chromium } from 'playwright-core';
import { answers } from './recordings.mjs';

const flags = [
    '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
    '--disable-background-networking', '--disable-component-update', '--disable-sync',
];

/** Runs in the page, before its own scripts. */
function installHost({ theme, language, recorded, textSize }) {
    const preferences = { theme: 'system', language: 'system', textSize };
    localStorage.setItem('assistant.preferences', JSON.stringify(preferences));
    window.sent = [];
    window.helio = {
        theme,
        language,
        call(command, args) {
            window.sent.push({ command, args });
            return command in recorded
                ? Promise.resolve(recorded[command])
                : Promise.reject(new Error(`no such command: ${command}`));
        },
    };
}

const scenes = {
    index: [
        { name: 'home' },
        { name: 'home-settings', act: (page) => page.click('[aria-haspopup="dialog"]') },
        {
            name: 'home-veil',
            act: (page) => page.evaluate(() => window.hiddentipCallBack({ result: 'show' })),
        },
        {
            name: 'home-exported',
            act: (page) => page.click('.push-button.primary'),
        },
    ],
    sysinfo: [
        { name: 'sysinfo' },
        { name: 'sysinfo-fonts', act: (page) => page.click('#tab-fonts') },
        { name: 'sysinfo-environment', act: (page) => page.click('#tab-environment') },
        {
            name: 'sysinfo-filter',
            act: async (page) => {
                await page.click('#tab-fonts');
                await page.keyboard.press('Control+f');
                await page.keyboard.type('sample 1');
            },
        },
        { name: 'sysinfo-failed', answers: { stratcheckenv: { result: 'error' } } },
    ],
};

async function draw(browser, options, scene, file, target) {
    const context = await browser.newContext({
        viewport: { width: options.width, height: options.height },
    });
    const page = await context.newPage();
    page.on('pageerror', (error) => console.error(`${scene.name}: ${error.message}`));
    page.on('console', (message) => {
        if (['error', 'warning'].includes(message.type())) {
            console.error(`${scene.name}: ${message.text()}`);
        }
    });
    await page.addInitScript(installHost, {
        theme: options.theme,
        language: options.language,
        textSize: options.textSize,
        recorded: { ...answers, ...scene.answers },
    });
    await page.goto(file);
    await page.waitForSelector('.frame:not([aria-busy])');
    await scene.act?.(page);
    await page.waitForTimeout(150);
    await page.screenshot({ path: target });
    await context.close();
}

const { values } = parseArgs({
    options: {
        page: { type: 'string', default: 'dist' },
        out: { type: 'string', default: '../docs/screenshots' },
        chromium: { type: 'string', default: '/usr/bin/chromium' },
        width: { type: 'string', default: '1000' },
        height: { type: 'string', default: '680' },
        textSize: { type: 'string', default: '100' },
        only: { type: 'string', default: '' },
    },
});
const pages = resolve(values.page);
const out = resolve(values.out);
await mkdir(out, { recursive: true });
const browser = await chromium.launch({ executablePath: values.chromium, args: flags });
try {
    const present = await readdir(pages);
    for (const [name, list] of Object.entries(scenes)) {
        if (!present.includes(`${name}.html`)) throw new Error(`${name}.html is not built`);
        for (const scene of list.filter((item) => item.name.startsWith(values.only))) {
            for (const [theme, language] of
                [['light', 'en_US'], ['dark', 'en_US'], ['light', 'zh_CN'], ['dark', 'zh_CN']]) {
                const target = join(out, `${scene.name}-${theme}-${language}.png`);
                const options = {
                    theme,
                    language,
                    width: Number(values.width),
                    height: Number(values.height),
                    textSize: Number(values.textSize),
                };
                const file = pathToFileURL(join(pages, `${name}.html`)).href;
                await draw(browser, options, scene, file, target);
            }
        }
    }
} finally {
    await browser.close();
}
console.log(out);
