// A private home and a copy of the suite in which commands are measured.

import { cpSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { suffixesOf } from '../tests/support/documenttypes.mjs';
import { secondsOf } from './processes.mjs';
import { TimedSession } from './timedsession.mjs';

/** The embedded scripts. */
export const scripts = new URL('../plugin/config/', import.meta.url).pathname;

/** A home, and a copy of the suite with a sample of every document type. */
export class Workplace {
    constructor(suite) {
        this.directory = mkdtempSync(`${tmpdir()}/commands-`);
        this.home = `${this.directory}/home`;
        this.office = `${this.directory}/suite/office`;
        mkdirSync(`${this.home}/.local/share/Orvane`, { recursive: true, mode: 0o700 });
        cpSync(suite, `${this.directory}/suite`, { recursive: true });
        mkdirSync(`${this.office}/asso_template`, { recursive: true });
        for (const suffix of Object.values(suffixesOf).flat())
            writeFileSync(`${this.office}/asso_template/vyr.${suffix}`, 'sample');
        // The scripts expect the desktop below /home/$USER.
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
