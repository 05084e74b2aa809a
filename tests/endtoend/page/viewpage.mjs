import { waitFor } from '../waitfor.mjs';

/** What a user may press or fill in. */
const CONTROLS = 'button, a[href], input, textarea, select, [role="tab"], [role="switch"]';

/** The control of that name in the first element that holds `within`, if it can be used now. */
const findControl = `(name, within) => {
    const labels = (element) => [...element.labels || []].map((label) => label.textContent).join(' ');
    const nameOf = (element) => element.getAttribute('aria-label') || labels(element)
        || element.placeholder || element.textContent;
    const scope = within === null ? document
        : [...document.querySelectorAll('li, section')].reverse()
            .find((element) => element.textContent.includes(within));
    const element = [...(scope ? scope.querySelectorAll(${JSON.stringify(CONTROLS)}) : [])]
        .find((candidate) => nameOf(candidate).trim() === name && !candidate.disabled);
    return element || null;
}`;

/** Where to click for it; null while something else lies over it. */
const placeOfControl = `(name, within) => {
    const found = (${findControl})(name, within);
    if (!found) return null;
    // The switch and the choices of the component library have an input that is not seen.
    const element = found.matches('[role="switch"], [type="radio"]')
        ? found.closest('.el-switch, label') : found;
    element.scrollIntoView({ block: 'center' });
    const box = element.getBoundingClientRect();
    const place = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
    const top = document.elementFromPoint(place.x, place.y);
    return top && (element.contains(top) || top.contains(element)) ? place : null;
}`;

/** A view of the application as its user sees it: names of controls, and texts. */
export class ViewPage {
    #page;

    /** @param page a ShellPage */
    constructor(page) {
        this.#page = page;
    }

    /** Clicks the control of that name with the mouse; `within`: a text beside it. */
    async press(name, { within = null, timeoutMs } = {}) {
        await this.#click(
            `(${placeOfControl})(${JSON.stringify(name)}, ${JSON.stringify(within)})`,
            { what: `a control “${name}” to press`, timeoutMs },
        );
    }

    /** Clicks the row of a list that holds a text. */
    async select(text, { timeoutMs } = {}) {
        await this.#click(
            `(() => {
            const row = [...document.querySelectorAll('[role="option"]')]
                .find((element) => element.textContent.includes(${JSON.stringify(text)}));
            if (!row) return null;
            const box = row.getBoundingClientRect();
            return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
        })()`,
            { what: `a row “${text}” to select`, timeoutMs },
        );
    }

    /** Clicks the place that an expression gives, once it has stayed the same for a frame. */
    async #click(placeExpression, options) {
        const { x, y } = await this.#page.until(
            `(async () => {
            const nextFrame = () => new Promise((resolve) => requestAnimationFrame(resolve));
            const before = ${placeExpression};
            if (!before) return null;
            await nextFrame();
            await nextFrame();
            const place = ${placeExpression};
            return place && place.x === before.x && place.y === before.y ? place : null;
        })()`,
            options,
        );
        for (const type of ['mousePressed', 'mouseReleased'])
            await this.#page.tools.Input.dispatchMouseEvent({
                type,
                x,
                y,
                button: 'left',
                clickCount: 1,
            });
    }

    /** Replaces what stands in the field of that name. */
    async fill(name, text) {
        await this.#page.until(
            `(() => {
            const field = (${findControl})(${JSON.stringify(name)}, null);
            if (field) { field.focus(); field.select(); }
            return field && document.activeElement === field;
        })()`,
            { what: `a field “${name}”` },
        );
        await this.#page.tools.Input.insertText({ text });
    }

    /** All that can be read, without the runs of blanks of the source. */
    async text() {
        return this.#page.evaluate("document.body.innerText.replace(/\\s+/g, ' ')");
    }

    /** Waits until a text can be read. */
    async shows(text, options) {
        await this.showsOneOf([text], options);
    }

    /** Waits until one of these texts can be read; gives it. */
    async showsOneOf(texts, options) {
        let last = '';
        try {
            return await waitFor(
                async () => {
                    last = await this.text();
                    return texts.find((text) => last.includes(text));
                },
                { what: `the text “${texts.join('” or “')}”`, ...options },
            );
        } catch (error) {
            throw new Error(`${error.message}; shown is: ${last}`);
        }
    }

    async hides(text, options) {
        return waitFor(async () => !(await this.text()).includes(text), {
            what: `the end of the text “${text}”`,
            ...options,
        });
    }

    evaluate(expression) {
        return this.#page.evaluate(expression);
    }

    until(expression, options) {
        return this.#page.until(expression, options);
    }

    get tools() {
        return this.#page.tools;
    }
}
