import { Page } from 'browser-driver';

/** A page of the running window. */
export class ShellPage extends Page {
    /** Connects to the page of that name, also in the page that waited, once it is there. */
    static async of(port, name, options) {
        return this.attach(port, (url) => /[^/#]*$/.exec(url)?.[0] === name, {
            what: `the page ${name}`,
            ...options,
        });
    }

    /** Sends a command as the page itself would; gives the envelope. */
    async call(command, args) {
        return this.evaluate(`helio.call(${JSON.stringify(command)}, ${JSON.stringify(args)})`);
    }

    /** Waits until the page has been drawn as it is now. */
    async drawn() {
        await this.evaluate(`(async () => {
            const frame = () => new Promise((resolve) => requestAnimationFrame(resolve));
            // The second frame starts only after the first one has been drawn.
            await frame();
            await frame();
        })()`);
    }

    /** Where on the screen the middle of an element is, once the page has been drawn. */
    async placeOf(selector) {
        await this.drawn();
        return this.evaluate(`(() => {
            const box = document.querySelector(${JSON.stringify(selector)}).getBoundingClientRect();
            return { x: Math.round(screenX + box.x + box.width / 2),
                y: Math.round(screenY + box.y + box.height / 2) };
        })()`);
    }
}
