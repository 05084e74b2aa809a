import CDP from 'chrome-remote-interface';

import { waitFor } from '../waitfor.mjs';

/** A page of the running window, seen through the developer tools. */
export class ShellPage {
    #client;

    /** Connects to the page whose address ends in that name, once there is one. */
    static async of(port, name) {
        const target = await waitFor(async () => {
            const targets = await CDP.List({ port }).catch(() => []);
            return targets.find(({ type, url }) => type === 'page' && url.endsWith(`/${name}`));
        }, { timeoutMs: 20_000, what: `the page ${name}` });
        const page = new ShellPage(await CDP({ port, target }));
        // The tools name a page that is on its way before its document is there.
        await page.until(`location.href.endsWith(${JSON.stringify(`/${name}`)})
            && document.readyState === 'complete'`);
        return page;
    }

    constructor(client) {
        this.#client = client;
    }

    /** The value of an expression in the page, waited for if it is a promise. */
    async evaluate(expression) {
        const { result, exceptionDetails } = await this.#client.Runtime.evaluate(
            { expression, awaitPromise: true, returnByValue: true, userGesture: true });
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

    /** Where on the screen the middle of an element is. */
    async placeOf(selector) {
        return this.evaluate(`(() => {
            const box = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
            return { x: Math.round(screenX + box.x + box.width / 2),
                y: Math.round(screenY + box.y + box.height / 2) };
        })()`);
    }

    get tools() {
        return this.#client;
    }

    async close() {
        await this.#client.close();
    }
}
