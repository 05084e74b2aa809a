import CDP from 'chrome-remote-interface';

import { waitFor } from '../../waitfor.mjs';

const LONGEST_ANSWER = 90_000;
/** A page whose process has just gone never answers; another may be there in its place by then. */
const LONGEST_FIRST_ANSWER = 3_000;

async function within(milliseconds, promise, what) {
    let timer;
    const tooLate = new Promise((_, reject) => {
        timer = setTimeout(() => reject(new Error(`no answer to ${what}`)), milliseconds);
    });
    try {
        return await Promise.race([promise, tooLate]);
    } finally {
        clearTimeout(timer);
    }
}

/** A page of the running window, seen through the developer tools. */
export class ShellPage {
    #client;

    /** Connects to the page whose address ends in that name, once it is there. */
    static async of(port, name, { timeoutMs = 90_000 } = {}) {
        return waitFor(() => ShellPage.#present(port, name), {
            timeoutMs,
            what: `the page ${name}`,
        });
    }

    /** The same if it is there; null otherwise. */
    static async #present(port, name) {
        const targets = await CDP.List({ port }).catch(() => []);
        const target = targets.find(({ type, url }) => type === 'page' && url.endsWith(`/${name}`));
        const client = target && (await CDP({ port, target }).catch(() => null));
        if (!client) return null;
        const page = new ShellPage(client);
        // The tools name a page that is on its way before its document is there.
        const isThere = `location.href.endsWith(${JSON.stringify(`/${name}`)})
            && document.readyState === 'complete'`;
        if (await page.evaluate(isThere, LONGEST_FIRST_ANSWER).catch(() => false)) return page;
        await page.close();
        return null;
    }

    constructor(client) {
        this.#client = client;
    }

    /** The value of an expression in the page, waited for if it is a promise. */
    async evaluate(expression, timeoutMs = LONGEST_ANSWER) {
        const request = { expression, awaitPromise: true, returnByValue: true, userGesture: true };
        const { result, exceptionDetails } = await within(
            timeoutMs,
            this.#client.Runtime.evaluate(request),
            expression.slice(0, 200),
        );
        if (exceptionDetails)
            throw new Error(exceptionDetails.exception?.description ?? exceptionDetails.text);
        return result.value;
    }

    /** Sends a command as the page itself would; gives the envelope. */
    async call(command, args) {
        return this.evaluate(`helio.call(${JSON.stringify(command)}, ${JSON.stringify(args)})`);
    }

    /** Waits until an expression in the page is true. */
    async until(expression, options) {
        return waitFor(async () => this.evaluate(expression), { what: expression, ...options });
    }

    /** Where on the screen the middle of an element is, once the page has been drawn. */
    async placeOf(selector) {
        return this.evaluate(`(async () => {
            const drawn = () => new Promise((resolve) => requestAnimationFrame(resolve));
            // The second frame is begun when the first one is there.
            await drawn();
            await drawn();
            const box = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
            return { x: Math.round(screenX + box.x + box.width / 2),
                y: Math.round(screenY + box.y + box.height / 2) };
        })()`);
    }

    get tools() {
        return this.#client;
    }

    async close() {
        await within(LONGEST_FIRST_ANSWER, this.#client.close(), 'the goodbye').catch(() => {});
    }
}
