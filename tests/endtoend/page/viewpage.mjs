import { waitFor } from 'browser-driver';

import { ShellPage } from '../helio/shell/shellpage.mjs';

/** What a user may press or fill in now. */
const usableControls = 'button, a[href], input, textarea, select, [role="tab"], [role="switch"]'
    .split(', ')
    .map((selector) => `${selector}:not(:disabled):not([aria-disabled="true"])`)
    .join(', ');

/** A view of the application as its user sees it: names of controls, and texts. */
export class ViewPage extends ShellPage {
    /** Clicks the control of that name with the mouse; `within`: a text beside it. */
    async press(name, { within = null, timeoutMs = undefined } = {}) {
        const place =
            within === null ? this : this.locator('li, section', { hasText: within, nth: -1 });
        await place.locator(usableControls, { named: name }).click({ timeoutMs });
    }

    /** Clicks the list row that contains a text. */
    async select(text, options) {
        await this.locator('[role="option"]', { hasText: text }).click(options);
    }

    /** Replaces the text of the field of that name. */
    async fill(name, text) {
        await this.locator(usableControls, { named: name }).fill(text);
    }

    /** The visible text, with runs of white space as one space. */
    async text() {
        return this.evaluate("(document.body?.innerText ?? '').replace(/\\s+/g, ' ')");
    }

    /** Waits until a text is shown. */
    async shows(text, options) {
        await this.showsOneOf([text], options);
    }

    /** Waits until one of these texts is shown; gives it. */
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
}
