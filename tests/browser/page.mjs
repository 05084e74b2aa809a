import CDP from 'chrome-remote-interface';
import { Keyboard } from './keyboard.mjs';
import { Locator } from './locator.mjs';
import { waitFor, within } from './waiting.mjs';

const longestAnswer = 90_000;
/** Short: a page whose process has just gone never answers, and a new page may replace it. */
const longestFirstAnswer = 3_000;

/** Connects to the page as an object of that kind if it is there; null otherwise. */
async function present(Kind, port, isWanted) {
    // Nothing listens at first.
    const targets = await CDP.List({ port }).catch(() => []);
    const target = targets.find(({ type, url }) => type === 'page' && isWanted(url));
    const client = target && (await CDP({ port, target, local: true }).catch(() => null));
    if (!client) return null;
    const page = new Kind(client);
    // The tools list a page before its document is there.
    const url = await page
        .evaluate("document.readyState === 'complete' && location.href", undefined, {
            timeoutMs: longestFirstAnswer,
        })
        .catch(() => false);
    if (url && isWanted(url)) return page;
    await page.close();
    return null;
}

/** A page of a Chromium, driven through the developer tools. */
export class Page {
    #client;
    #dispose;

    /** What the page has thrown or logged as an error or warning since gatherComplaints(). */
    complaints = /** @type {string[]} */ ([]);

    /**
     * Connects to the page whose address is wanted, once its document is complete.
     * @param {number} port
     * @param {(url: string) => boolean} isWanted
     * @param {{ timeoutMs?: number, what?: string }} [options]
     */
    static async attach(port, isWanted, { timeoutMs = 90_000, what = 'the page' } = {}) {
        return waitFor(() => present(this, port, isWanted), { timeoutMs, what });
    }

    /** @param dispose what else to do when the page is closed */
    constructor(client, dispose = async () => {}) {
        this.#client = client;
        this.#dispose = dispose;
    }

    /**
     * The value of an expression in the page, or of a function there that is called with the
     * argument. A promise is awaited.
     * @template T, A
     * @param {string | ((argument: A) => T)} code
     * @param {A} [argument]
     * @param {{ timeoutMs?: number }} [options]
     * @returns {Promise<Awaited<T>>}
     */
    async evaluate(code, argument, { timeoutMs = longestAnswer } = {}) {
        const expression =
            typeof code === 'function' ? `(${code})(${JSON.stringify(argument) ?? ''})` : code;
        const request = { expression, awaitPromise: true, returnByValue: true, userGesture: true };
        const { result, exceptionDetails } = await within(
            timeoutMs,
            this.#client.Runtime.evaluate(request),
            expression.slice(0, 200),
        );
        if (exceptionDetails) {
            throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
        }
        return result.value;
    }

    /**
     * Waits until an expression or a function in the page gives something truthy; gives that.
     * @template T
     * @param {string | (() => T)} condition
     * @param {{ timeoutMs?: number, what?: string }} [options]
     */
    async until(condition, options) {
        return waitFor(() => this.evaluate(condition), { what: `${condition}`, ...options });
    }

    /**
     * The elements that match a CSS selector.
     * @param {string} selector
     * @param {import('./locator.mjs').Choice} [choice]
     */
    locator(selector, choice) {
        return new Locator(this, []).locator(selector, choice);
    }

    /**
     * The innermost visible elements with a text; exact: which is all of their text.
     * @param {string | RegExp} text
     * @param {{ exact?: boolean }} [options]
     */
    getByText(text, options) {
        return new Locator(this, []).getByText(text, options);
    }

    get keyboard() {
        return new Keyboard(this.#client.Input);
    }

    /** Moves the mouse there; `place` is { x, y } in the page. */
    async pointAt(place) {
        await this.#client.Input.dispatchMouseEvent({ type: 'mouseMoved', ...place });
    }

    /** Clicks with the mouse; `place` is { x, y } in the page. */
    async clickAt(place, { clicks = 1 } = {}) {
        const { Input } = this.#client;
        await this.pointAt(place);
        for (let clickCount = 1; clickCount <= clicks; clickCount += 1) {
            for (const type of ['mousePressed', 'mouseReleased']) {
                await Input.dispatchMouseEvent({ type, ...place, button: 'left', clickCount });
            }
        }
    }

    /** Opens a file or address and waits until it is loaded. */
    async goto(url) {
        await this.#loaded((Page) => Page.navigate({ url }));
    }

    async reload() {
        await this.#loaded((Page) => Page.reload());
    }

    async #loaded(navigate) {
        const { Page: pageDomain } = this.#client;
        await pageDomain.enable();
        const loaded = pageDomain.loadEventFired();
        const { errorText } = (await navigate(pageDomain)) ?? {};
        if (errorText) throw new Error(errorText);
        await within(longestAnswer, loaded, 'the loading of the page');
    }

    /** Runs a script before those of each document that is opened from now on. */
    async addInitScript(source) {
        await this.#client.Page.enable();
        await this.#client.Page.addScriptToEvaluateOnNewDocument({ source });
    }

    /** Begins to fill `complaints`. */
    async gatherComplaints() {
        const { Log, Runtime } = this.#client;
        const textOf = ({ value, description }) => String(value ?? description);
        Runtime.exceptionThrown(({ exceptionDetails: { exception, text } }) =>
            this.complaints.push(exception?.description ?? text),
        );
        Runtime.consoleAPICalled(({ type, args }) => {
            if (['error', 'warning'].includes(type)) {
                this.complaints.push(args.map(textOf).join(' '));
            }
        });
        Log.entryAdded(({ entry: { level, text } }) => {
            if (['error', 'warning'].includes(level)) this.complaints.push(text);
        });
        await Promise.all([Log.enable(), Runtime.enable()]);
    }

    /** Lets that much time pass at once for the page's timers; its clock then stands still. */
    async advanceTime(milliseconds) {
        const { Emulation } = this.#client;
        const passed = Emulation.virtualTimeBudgetExpired();
        await Emulation.setVirtualTimePolicy({ policy: 'advance', budget: milliseconds });
        await within(longestAnswer, passed, 'the passing of time');
    }

    /** A picture of what is visible, as PNG. */
    async screenshot() {
        const { data } = await this.#client.Page.captureScreenshot();
        return Buffer.from(data, 'base64');
    }

    /** The domains of the developer tools, for what has no method here. */
    get tools() {
        return this.#client;
    }

    async close() {
        await within(longestFirstAnswer, this.#client.close(), 'the goodbye').catch(() => {});
        await this.#dispose();
    }
}
