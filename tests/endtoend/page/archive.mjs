import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';

/** The files of a feedback archive by name, once it is complete. */
export async function archived(archive) {
    // Only an archive that tar can read to its end is complete.
    const names = await waitFor(
        () => {
            if (!fs.existsSync(archive)) return null;
            try {
                return execFileSync('tar', ['-tzf', archive], { encoding: 'utf8', stdio: 'pipe' })
                    .split('\n')
                    .filter((name) => name && !name.endsWith('/'));
            } catch {
                return null; // still being written
            }
        },
        { what: `the archive ${path.basename(archive)}`, timeoutMs: 90_000 },
    );
    return new Map(
        names.map((name) => [
            path.basename(name),
            execFileSync('tar', ['-xzOf', archive, name], { encoding: 'utf8' }),
        ]),
    );
}
