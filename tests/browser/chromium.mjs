import CDP from 'chrome-remote-interface';
import { existsSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { once } from 'node:events';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { Page } from './page.mjs';
import { end, start } from './process.mjs';
import { waitFor, within } from './waiting.mjs';

/** Debian's package chromium, unless the environment names another one. */
export const chromiumPath = process.env.CHROMIUM ?? '/usr/bin/chromium';

const commonFlags = [
    '--headless',
    '--remote-debugging-port=0',
    '--no-sandbox',
    '--no-first-run',
    '--disable-gpu',
    '--disable-quic',
    '--disable-background-networking',
    '--disable-background-timer-throttling',
    '--disable-backgrounding-occluded-windows',
    '--disable-component-update',
    '--disable-dev-shm-usage',
    '--disable-extensions',
    '--disable-features=PreloadTopChromeWebUI',
    '--disable-renderer-backgrounding',
    '--disable-sync',
    '--force-color-profile=srgb',
    '--hide-scrollbars',
    '--password-store=basic',
    // A mouse that can hover, which a machine without a display lacks.
    '--blink-settings=primaryHoverType=2,availableHoverTypes=2,primaryPointerType=4,availablePointerTypes=4',
];

/** A Chromium without a window. Every page has its own profile. */
export class Chromium {
    #client;
    #stop = async () => {};

    /** The port of the developer tools. */
    port;

    /** Starts the program; close() ends it. */
    static async start(program = chromiumPath) {
        const profile = mkdtempSync(join(tmpdir(), 'chromium-'));
        const flags = [...commonFlags, `--user-data-dir=${profile}`];
        const child = start(program, flags, { stdio: ['ignore', 'ignore', 'pipe'] });
        let complaints = '';
        child.stderr.setEncoding('utf8').on('data', (text) => {
            complaints = (complaints + text).slice(-10_000);
        });
        const stop = async (client) => {
            // Its helper processes end with it, and write into the profile until they do. One that
            // does not answer is killed.
            if (client && child.exitCode === null) {
                const gone = once(child, 'exit');
                client.Browser.close().catch(() => {});
                await within(10_000, gone, 'the request to close').catch(() => {});
            }
            await end(child);
            rmSync(profile, { recursive: true, force: true, maxRetries: 10, retryDelay: 100 });
        };
        const portFile = join(profile, 'DevToolsActivePort');
        try {
            const port = await waitFor(
                () => {
                    if (child.exitCode !== null) throw new Error(`${program}: ${complaints}`);
                    return existsSync(portFile) && parseInt(readFileSync(portFile, 'utf8'), 10);
                },
                { what: `the start of ${program}` },
            );
            const browser = await Chromium.connect(port);
            browser.#stop = () => stop(browser.#client);
            return browser;
        } catch (error) {
            await stop();
            throw error;
        }
    }

    /** Connects to a Chromium that runs already; close() only disconnects. */
    static async connect(port) {
        const browser = new Chromium();
        browser.port = port;
        const { webSocketDebuggerUrl } = await CDP.Version({ port });
        browser.#client = await CDP({ target: webSocketDebuggerUrl, local: true });
        return browser;
    }

    /**
     * Opens an empty page.
     * @param {{ width: number, height: number, language: string, theme: string, scale?: number,
     *     stillness?: boolean }} options `stillness` is for a user who wants less motion
     */
    async newPage({ width, height, language, theme, scale = 1, stillness = false }) {
        const { Target } = this.#client;
        const { browserContextId } = await Target.createBrowserContext();
        const { targetId } = await Target.createTarget({ url: 'about:blank', browserContextId });
        const client = await CDP({ port: this.port, target: targetId, local: true });
        const { Browser, Emulation } = client;
        const { userAgent } = await Browser.getVersion();
        await Emulation.setDeviceMetricsOverride({
            width,
            height,
            deviceScaleFactor: scale,
            mobile: false,
        });
        await Emulation.setFocusEmulationEnabled({ enabled: true });
        await Emulation.setLocaleOverride({ locale: language });
        await Emulation.setUserAgentOverride({ userAgent, acceptLanguage: language });
        await Emulation.setEmulatedMedia({
            features: [
                { name: 'prefers-color-scheme', value: theme },
                { name: 'prefers-reduced-motion', value: stillness ? 'reduce' : '' },
            ],
        });
        const page = new Page(client, () => Target.disposeBrowserContext({ browserContextId }));
        await page.gatherComplaints();
        return page;
    }

    async close() {
        await this.#stop();
        await this.#client.close();
    }
}
