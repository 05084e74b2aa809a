// A private home and a copy of the suite in which commands are measured.

import { cpSync, mkdirSync, mkdtempSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { secondsOf } from './processes.mjs';
import { TimedSession } from './timedsession.mjs';

/** The embedded scripts as the build puts them together. */
export const scripts = new URL('../build/plugin/config/', import.meta.url).pathname;

/** A home and a copy of the suite tree with a sample of every document kind. */
export class Workplace {
    constructor(suite) {
        this.directory = mkdtempSync(`${tmpdir()}/commands-`);
        this.home = `${this.directory}/home`;
        this.office = `${this.directory}/suite/office`;
        mkdirSync(`${this.home}/.local/share/Orvane`, { recursive: true, mode: 0o700 });
        cpSync(suite, `${this.directory}/suite`, { recursive: true });
        for (const name of readdirSync(`${this.office}/asso_template`)) {
            writeFileSync(`${this.office}/asso_template/${name}`, 'sample');
        }
        // The scripts look for the desktop below /home/$USER.
        this.env = {
            ...process.env,
            HOME: this.home,
            XDG_RUNTIME_DIR: this.home,
            USER: `..${this.home}`,
        };
    }

    shell(command) {
        return secondsOf('sh', ['-c', command], { env: this.env });
    }

    async withSession(use, env = this.env) {
        const session = new TimedSession(`${this.office}/assistantctl`, env);
        try {
            return await use(session);
        } finally {
            await session.close();
        }
    }

    remove() {
        rmSync(this.directory, { recursive: true, force: true });
    }
}
