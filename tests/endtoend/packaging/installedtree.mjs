import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { promisify } from 'node:util';

import { repository, suiteDirectory } from '../paths.mjs';
import { removeTree } from '../sandboxmounts.mjs';

const build = path.dirname(suiteDirectory);
const components = ['plugin', 'runtime', 'data', 'cli', 'programs', 'updater'];

/** Whether the tree under test can be installed: SUITE_DIR may name one outside of a build. */
export const canInstall =
    process.env.SUITE_DIR === undefined || fs.existsSync(path.join(build, 'cmake_install.cmake'));

/** What the packages of the command line, the programs and the updater have in /usr. */
export class InstalledTree {
    directory = fs.mkdtempSync(path.join(os.tmpdir(), 'installedtree-'));

    async install() {
        for (const component of components) {
            await promisify(execFile)(
                'cmake',
                ['--install', build, '--component', component, '--prefix', '/usr'],
                { env: { ...process.env, DESTDIR: this.directory }, timeout: 240_000 },
            );
        }
    }

    path(name) {
        return path.join(this.directory, name);
    }

    dispose() {
        removeTree(this.directory);
    }
}

/** A file that the Debian packages are made of. */
export const packagingFile = (name) =>
    fs.readFileSync(path.join(repository, 'packaging/debian', name), 'utf8');

/** Shows the tree in a sandbox at /tmp/package, and the updater where its view looks for it. */
export async function showInstalled(root, installed) {
    const updater = installed.path('usr/lib/office-assistant/updater/vyrupdate');
    const config = path.join(repository, 'programs/updater/vyrupdate.cfg');
    await root.writeFile('/opt/orvane/vtool/vyrupdate', fs.readFileSync(updater), { mode: 0o755 });
    await root.writeFile('/opt/orvane/vtool/vyrupdate.cfg', fs.readFileSync(config));
    root.bind(installed.directory, '/tmp/package');
}
