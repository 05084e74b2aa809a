import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { promisify } from 'node:util';

import { suiteDirectory } from '../paths.mjs';
import { removeTree } from '../sandboxmounts.mjs';

const build = path.dirname(suiteDirectory);

/** Whether the tree under test can be packaged: SUITE_DIR may name one outside of a build. */
export const canBuildPackage =
    process.env.SUITE_DIR === undefined || fs.existsSync(path.join(build, 'CPackConfig.cmake'));

/** What a program prints. The test runner would give up a process that blocks for a minute. */
async function outputOf(program, args, { cwd = undefined } = {}) {
    const { stdout } = await promisify(execFile)(program, args, { timeout: 240_000, cwd });
    return stdout;
}

/** The project's Debian package, unpacked: its tree in `tree`, its control files in `control`. */
export class DebianPackage {
    static async build() {
        const debianPackage = new DebianPackage();
        try {
            await debianPackage.#build();
        } catch (error) {
            debianPackage.dispose();
            throw error;
        }
        return debianPackage;
    }

    constructor() {
        this.directory = fs.mkdtempSync(path.join(os.tmpdir(), 'debianpackage-'));
        this.tree = path.join(this.directory, 'tree');
        this.control = path.join(this.directory, 'control');
    }

    async #build() {
        await outputOf('cpack', ['-G', 'DEB', '-B', this.directory], { cwd: build });
        const [name] = fs.readdirSync(this.directory).filter((entry) => entry.endsWith('.deb'));
        this.file = path.join(this.directory, name);
        await outputOf('dpkg-deb', ['-x', this.file, this.tree]);
        await outputOf('dpkg-deb', ['-e', this.file, this.control]);
    }

    /** Mode, owner and name of everything in the package. */
    async contents() {
        const listing = await outputOf('dpkg-deb', ['-c', this.file]);
        return listing
            .split('\n')
            .filter(Boolean)
            .map((line) => {
                const [mode, owner, , , , name] = line.split(/\s+/);
                return { mode, owner, name: name.slice(1) };
            });
    }

    dispose() {
        removeTree(this.directory);
    }
}

/**
 * Installs the package into a sandbox: files for /opt and /var/log at their place, the others
 * below /tmp/package. The control script runs as the sandbox's administrator.
 */
export async function installPackage(root, debianPackage) {
    const updater = path.join(debianPackage.tree, 'opt/orvane/vtool');
    for (const name of fs.readdirSync(updater)) {
        await root.writeFile(
            `/opt/orvane/vtool/${name}`,
            fs.readFileSync(path.join(updater, name)),
            { mode: fs.statSync(path.join(updater, name)).mode & 0o777 },
        );
    }
    root.bind(debianPackage.tree, '/tmp/package');
    root.bind(debianPackage.control, '/tmp/control');
}
