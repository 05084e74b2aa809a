import fs from 'node:fs';
import path from 'node:path';

import { emulationMounts } from './emulated.mjs';

/** Suite files of this size or more are bound read-only instead of copied. */
const copyLimit = 64 * 1024;

/** Arguments that show the system's own directories read-only, without any of its users' files. */
export function systemMounts() {
    const args = [];
    for (const name of ['usr', 'etc', 'var', 'sys']) {
        if (fs.existsSync(`/${name}`)) args.push('--ro-bind', `/${name}`, `/${name}`);
    }
    for (const name of fs.readdirSync('/')) {
        if (!/^s?bin$|^lib/.test(name)) continue;
        const target = fs.lstatSync(`/${name}`).isSymbolicLink()
            ? ['--symlink', fs.readlinkSync(`/${name}`)]
            : ['--ro-bind', `/${name}`];
        args.push(...target, `/${name}`);
    }
    return [...args, ...emulationMounts()];
}

/** A directory of links to everything in a system directory except the hidden names. */
export function directoryWithout(system, hiddenNames, shownAt, directory) {
    fs.mkdirSync(directory, { recursive: true });
    for (const name of fs.readdirSync(system)) {
        if (!hiddenNames.includes(name)) {
            fs.symlinkSync(path.posix.join(shownAt, name), path.join(directory, name));
        }
    }
}

/**
 * Copies the suite's tree so that a test can change it. Large files are left empty, to be bound as
 * the returned map (path below the suite → host file) says.
 */
export function copySuite(source, target) {
    const large = new Map();
    const copy = (relative) => {
        const from = path.join(source, relative);
        const to = path.join(target, relative);
        const stat = fs.statSync(from);
        if (stat.isDirectory()) {
            fs.mkdirSync(to, { recursive: true });
            for (const name of fs.readdirSync(from)) copy(path.join(relative, name));
        } else if (stat.size >= copyLimit) {
            fs.writeFileSync(to, '');
            large.set(relative, fs.realpathSync(from));
        } else {
            fs.copyFileSync(from, to);
            fs.chmodSync(to, stat.mode & 0o777);
        }
    };
    copy('');
    return large;
}

/** Removes a tree in which a test may have taken away its own permissions. */
export function removeTree(directory) {
    const openUp = (folder) => {
        fs.chmodSync(folder, 0o700);
        for (const entry of fs.readdirSync(folder, { withFileTypes: true })) {
            if (entry.isDirectory()) openUp(path.join(folder, entry.name));
        }
    };
    openUp(directory);
    fs.rmSync(directory, { recursive: true, force: true });
}
