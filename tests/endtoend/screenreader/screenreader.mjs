import { once } from 'node:events';
import fs from 'node:fs';
import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';

import { repository } from '../paths.mjs';
import { SessionBus } from '../helio/shell/sessionbus.mjs';

const orca = path.join(repository, 'tests/endtoend/screenreader/orcabylines.py');
const spoken = /SPEECH OUTPUT: '(.*?)' ?\{/gs;

/** Orca on the display of a scratch suite. It has no voice and writes down what it says. */
export class ScreenReader {
    #bus;
    #launcher;
    #orca;
    #log;
    /** What programs need to be read by it. */
    env = {};

    static async start(suite, display) {
        const reader = new ScreenReader();
        try {
            await reader.#start(suite, display);
        } catch (error) {
            await reader.stop();
            throw error;
        }
        return reader;
    }

    async #start(suite, display) {
        this.#bus = await SessionBus.start(suite);
        this.env = this.#bus.env;
        this.#log = path.join(suite.directory, 'orca.log');
        const env = {
            ...suite.environment(display),
            ...this.env,
            GSETTINGS_BACKEND: 'memory',
            SPEECHD_CMD: '/nowhere/speech-dispatcher',
        };
        const options = { env, stdio: 'ignore' };
        const switches = ['--launch-immediately', '--a11y=1', '--screen-reader=1'];
        this.#launcher = start('/usr/libexec/at-spi-bus-launcher', switches, options);
        const buses = path.join(env.XDG_RUNTIME_DIR, 'at-spi');
        await waitFor(() => fs.existsSync(buses) && fs.readdirSync(buses).length > 0, {
            what: 'the bus of the screen reader',
        });
        this.#orca = start('/usr/bin/python3', [orca, `--debug-file=${this.#log}`], options);
        await this.hears('Screen reader on.');
    }

    /** All that it has said, in order. */
    get said() {
        const log = fs.existsSync(this.#log) ? fs.readFileSync(this.#log, 'utf8') : '';
        return [...log.matchAll(spoken)].map(([, text]) => text);
    }

    /** Waits until it says a text, after so many others. */
    async hears(text, after = 0, timeoutMs = 60_000) {
        const heard = () => this.said.slice(after);
        try {
            await waitFor(() => heard().some((one) => one.includes(text)), { timeoutMs });
        } catch (error) {
            throw new Error(`“${text}” was not said, but “${heard().join('” “')}”`, {
                cause: error,
            });
        }
    }

    async stop() {
        if (this.#orca) await end(this.#orca);
        if (this.#launcher) {
            // It ends the bus that it has started.
            const gone = once(this.#launcher, 'exit');
            this.#launcher.kill('SIGTERM');
            await gone;
        }
        await this.#bus?.stop();
    }
}
