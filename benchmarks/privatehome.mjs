// A home of the benchmark's own: what is measured neither finds nor changes anything of the user's.

import { mkdirSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

/** Runs `use` with an environment whose home directory is nobody's. */
export async function withPrivateHome(use) {
    const home = mkdtempSync(join(tmpdir(), 'bench-home-'));
    mkdirSync(join(home, 'run'), { mode: 0o700 });
    // The scripts take /home/$USER for the home directory, whatever HOME says.
    const env = {
        ...process.env,
        HOME: home,
        USER: `..${home}`,
        XDG_RUNTIME_DIR: join(home, 'run'),
        DBUS_SESSION_BUS_ADDRESS: 'disabled:',
    };
    try {
        return await use(env, home);
    } finally {
        rmSync(home, { recursive: true, force: true, maxRetries: 5 });
    }
}
