import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

import { SUITE } from '../paths.mjs';
import { removeTree } from '../sandboxmounts.mjs';

const BUILD = path.dirname(SUITE);
const LONG = { timeout: 240_000, stdio: ['ignore', 'pipe', 'pipe'] };

/** Whether the tree under test belongs to a build that can be made a package. */
export const canBuildPackage = fs.existsSync(path.join(BUILD, 'CPackConfig.cmake'))
    && fs.existsSync('/usr/bin/dpkg-deb');

/** The project's Debian package, unpacked: its tree in `tree`, its control files in `control`. */
export class DebianPackage {
    static build() {
        const directory = fs.mkdtempSync(path.join(os.tmpdir(), 'debianpackage-'));
        try {
            execFileSync('cpack', ['-G', 'DEB', '-B', directory], { cwd: BUILD, ...LONG });
            const [name] = fs.readdirSync(directory).filter((entry) => entry.endsWith('.deb'));
            return new DebianPackage(directory, path.join(directory, name));
        } catch (error) {
            removeTree(directory);
            throw error;
        }
    }

    constructor(directory, file) {
        this.directory = directory;
        this.file = file;
        this.tree = path.join(directory, 'tree');
        this.control = path.join(directory, 'control');
        execFileSync('dpkg-deb', ['-x', file, this.tree], LONG);
        execFileSync('dpkg-deb', ['-e', file, this.control], LONG);
    }

    /** Mode, owner and name of everything in the package. */
    get contents() {
        return execFileSync('dpkg-deb', ['-c', this.file], LONG).toString().split('\n')
            .filter(Boolean).map((line) => {
                const [mode, owner, , , , name] = line.split(/\s+/);
                return { mode, owner, name: name.slice(1) };
            });
    }

    dispose() {
        removeTree(this.directory);
    }
}

/**
 * Installs the package into a sandbox: what belongs into /opt and /var/log at its place, the rest
 * below /tmp/package. The control script runs as the sandbox's administrator.
 */
export async function installPackage(root, debianPackage) {
    const updater = path.join(debianPackage.tree, 'opt/orvane/vtool');
    for (const name of fs.readdirSync(updater)) {
        await root.writeFile(`/opt/orvane/vtool/${name}`, fs.readFileSync(path.join(updater, name)),
            { mode: fs.statSync(path.join(updater, name)).mode & 0o777 });
    }
    root.bind(debianPackage.tree, '/tmp/package');
    root.bind(debianPackage.control, '/tmp/control');
}
