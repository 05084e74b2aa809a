// A private home directory: benchmarks neither read nor change the user's files.

import { mkdirSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

/** Runs `use` with the environment and the path of a temporary home directory. */
export async function withPrivateHome(use) {
    const home = mkdtempSync(join(tmpdir(), 'bench-home-'));
    mkdirSync(join(home, 'run'), { mode: 0o700 });
    // The scripts use /home/$USER as the home directory and ignore HOME.
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
