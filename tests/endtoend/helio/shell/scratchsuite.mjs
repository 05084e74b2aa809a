import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

import { repository, suiteDirectory } from '../../paths.mjs';

const pages = path.join(repository, 'tests/endtoend/helio/shell/pages');
const opener = `#!/bin/sh
printf '%s\\n' "$@" >> "$HOME/opened"
`;

/**
 * A copy of the runnable tree, with a home directory. Its pages are the tests' own or, with
 * `views`, those of the HTML application.
 */
export class ScratchSuite {
    static create(options) {
        return new ScratchSuite(options);
    }

    constructor({ views = false } = {}) {
        this.directory = fs.mkdtempSync(path.join(os.tmpdir(), 'shelltest-'));
        this.office = path.join(this.directory, 'suite/office');
        this.program = path.join(this.office, 'helio-shell');
        this.addon = path.join(this.office, 'addons/vyrassistanttool');
        this.pages = path.join(this.addon, 'officeassistant/resource/html');
        this.home = path.join(this.directory, 'home');
        this.fakes = path.join(this.directory, 'fakes');
        fs.cpSync(suiteDirectory, path.join(this.directory, 'suite'), { recursive: true });
        if (!views) {
            fs.rmSync(this.pages, { recursive: true, force: true });
            fs.cpSync(pages, this.pages, { recursive: true });
        }
        fs.mkdirSync(this.home);
        fs.mkdirSync(path.join(this.directory, 'run'), { mode: 0o700 });
        fs.mkdirSync(this.fakes);
        fs.writeFileSync(path.join(this.fakes, 'xdg-open'), opener, { mode: 0o755 });
    }

    /** The directory of the scripts that the library has copied to run them. */
    get staging() {
        return path.join(this.home, '.local/share/Orvane/tmp/officeassis_script');
    }

    pageUrl(name) {
        return `file://${path.join(this.pages, name)}`;
    }

    environment(display) {
        return {
            PATH: `${this.fakes}:${process.env.PATH}`,
            HOME: this.home,
            XDG_RUNTIME_DIR: path.join(this.directory, 'run'),
            // Otherwise Chromium starts a bus that outlives it.
            DBUS_SESSION_BUS_ADDRESS: 'disabled:',
            LANG: 'C.UTF-8',
            ...(display && { DISPLAY: display.name }),
        };
    }

    dispose() {
        // Programs that a command started may still be writing.
        fs.rmSync(this.directory, { recursive: true, force: true, maxRetries: 20 });
    }
}
