import { elementsOf, restingPlaceOf, selectField } from './inpage.mjs';
import { waitFor } from './waiting.mjs';

/**
 * Which of the elements: with a text, with a name (as read out: label, placeholder or text), the
 * one at a place in the document's order (from 0; -1 is the last).
 * @typedef {{ hasText?: string | RegExp, named?: string, nth?: number }} Choice
 * @typedef {{ timeoutMs?: number, what?: string }} Waiting
 */

function patternOf(text, exact = false) {
    if (text instanceof RegExp) return { source: text.source, flags: text.flags };
    const source = text.replace(/[.*+?^${}()|[\]\\]/g, '\\$&').replace(/\s+/g, ' ');
    return { source: exact ? `^${source}$` : source, flags: '' };
}

/** Elements of a page, looked for anew at each use. What concerns one element takes the first. */
export class Locator {
    #page;
    #steps;

    /** @param {import('./page.mjs').Page} page */
    constructor(page, steps) {
        this.#page = page;
        this.#steps = steps;
    }

    /**
     * The elements inside of these that match a CSS selector.
     * @param {string} selector
     * @param {Choice} [choice]
     */
    locator(selector, { hasText, named, nth } = {}) {
        const text = hasText === undefined ? undefined : patternOf(hasText);
        return new Locator(this.#page, [...this.#steps, { selector, text, named, nth }]);
    }

    /**
     * The innermost visible elements inside of these with a text; exact: which is all of it.
     * @param {string | RegExp} text
     * @param {{ exact?: boolean }} [options]
     */
    getByText(text, { exact = false } = {}) {
        return new Locator(this.#page, [...this.#steps, { text: patternOf(text, exact) }]);
    }

    get #elements() {
        return `(${elementsOf})(${JSON.stringify(this.#steps)})`;
    }

    get #what() {
        return this.#steps.map((step) => JSON.stringify(step)).join(' ');
    }

    /** @param {Waiting} [options] */
    async click(options) {
        await this.#clickWith(options, 1);
    }

    /** @param {Waiting} [options] */
    async dblclick(options) {
        await this.#clickWith(options, 2);
    }

    async #clickWith(options, clicks) {
        const place = await this.#page.until(`(${restingPlaceOf})(() => ${this.#elements}[0])`, {
            what: `the chance to click ${this.#what}`,
            ...options,
        });
        await this.#page.clickAt(place, { clicks });
    }

    /** Chooses a radio button or ticks a box. */
    async check() {
        if (!(await this.isChecked())) await this.click();
        await waitFor(() => this.isChecked(), { what: `the check of ${this.#what}` });
    }

    /** Replaces the text of a field. */
    async fill(text) {
        await this.#page.until(`(${selectField})(${this.#elements}[0])`, {
            what: `a field ${this.#what}`,
        });
        await this.#page.keyboard.type(text);
    }

    async focus() {
        await this.evaluate((/** @type {HTMLElement} */ element) => element.focus());
    }

    /**
     * Waits until one of the elements is visible.
     * @param {Waiting} [options]
     */
    async waitFor(options) {
        await this.#page.until(
            `${this.#elements}.some((element) => element.getClientRects().length > 0
                && getComputedStyle(element).visibility === 'visible')`,
            { what: this.#what, ...options },
        );
    }

    /** Waits until there is none. */
    async waitForNone() {
        await waitFor(async () => (await this.count()) === 0, { what: `the end of ${this.#what}` });
    }

    /**
     * What a function in the page gives for the element, once that is there.
     * @template T, A
     * @param {(element: any, argument: A) => T} code
     * @param {A} [argument]
     * @returns {Promise<Awaited<T>>}
     */
    async evaluate(code, argument) {
        const given = JSON.stringify(argument) ?? 'undefined';
        const { value } = await this.#page.until(
            `(async () => {
                const [element] = ${this.#elements};
                return element ? { value: await (${code})(element, ${given}) } : null;
            })()`,
            { what: this.#what },
        );
        return value;
    }

    /** @returns {Promise<number>} */
    count() {
        return this.#page.evaluate(`${this.#elements}.length`);
    }

    /** @returns {Promise<string[]>} */
    allTextContents() {
        return this.#page.evaluate(`${this.#elements}.map((element) => element.textContent)`);
    }

    textContent() {
        return this.evaluate((element) => /** @type {string} */ (element.textContent));
    }

    /** @param {string} name */
    getAttribute(name) {
        return this.evaluate(
            (element, wanted) => /** @type {string | null} */ (element.getAttribute(wanted)),
            name,
        );
    }

    inputValue() {
        return this.evaluate((element) => /** @type {string} */ (element.value));
    }

    isChecked() {
        return this.evaluate((element) => /** @type {boolean} */ (element.checked));
    }

    isDisabled() {
        return this.evaluate(
            (element) => element.disabled || element.getAttribute('aria-disabled') === 'true',
        );
    }
}
