import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

import { emulatedCommand } from './emulated.mjs';
import { scriptsDirectory, suiteDirectory } from './paths.mjs';
import { copySuite, directoryWithout, removeTree, systemMounts } from './sandboxmounts.mjs';
import { SandboxProcess } from './sandboxprocess.mjs';

const defaultTimeout = 90_000;
const searchPath = '/fakes:/usr/bin:/usr/sbin:/bin:/sbin';
const hidableDirectory = '/usr/bin';
const passedOn = ['ASAN_OPTIONS', 'LSAN_OPTIONS', 'TSAN_OPTIONS', 'UBSAN_OPTIONS'];

/** Private directories: the path in the sandbox, and the name on the host. */
const privateDirectories = {
    '/home': 'home',
    '/root': 'root',
    '/tmp': 'tmp',
    '/run': 'run',
    '/fakes': 'fakes',
    '/fakecalls': 'fakecalls',
    '/opt/orvane': 'orvane',
    '/var/log/vyrlog': 'vyrlog',
    '/usr/share/applications': 'applications',
};

/**
 * A file system of its own for one test: the system's programs read-only, and everything that the
 * suite reads or writes in plain host directories that the test can look into.
 *
 * Each run has process, network (loopback only) and IPC namespaces of its own: what a program
 * leaves behind ends with it. Neither a bus nor a display is there unless the test starts one.
 */
export class SandboxRoot {
    #directory;
    #user;
    #environment;
    #extraMounts = [];
    #boundFiles = new Map();
    #processes = new Set();
    #mountPoints = new Map();

    /**
     * user: login name; "root" has the user id 0 and the home /root, any other name 1000.
     * suite: show a copy of the runnable tree at /suite, for the test to change.
     * hide: programs of /usr/bin that must seem not to be installed.
     */
    static async create({ user = 'user', suite = false, hide = [], env = {} } = {}) {
        const root = new SandboxRoot(user, env);
        try {
            root.#hidePrograms(hide);
            if (suite) root.#addSuite();
        } catch (error) {
            await root.dispose();
            throw error;
        }
        return root;
    }

    constructor(user, env) {
        this.#user = user;
        this.#directory = fs.mkdtempSync(path.join(os.tmpdir(), 'sandboxroot-'));
        for (const [seen, name] of Object.entries(privateDirectories)) {
            const host = path.join(this.#directory, name);
            fs.mkdirSync(host);
            this.#mountPoints.set(seen, host);
        }
        const runtime = `/run/user/${this.userId}`;
        fs.mkdirSync(this.hostPath(this.home), { recursive: true });
        fs.mkdirSync(this.hostPath(runtime), { recursive: true, mode: 0o700 });
        this.#environment = {
            HOME: this.home,
            USER: user,
            LOGNAME: user,
            SHELL: '/bin/bash',
            PATH: searchPath,
            LANG: 'C.UTF-8',
            TZ: 'UTC',
            XDG_RUNTIME_DIR: runtime,
            ...env,
        };
        for (const name of passedOn) {
            if (process.env[name]) this.#environment[name] = process.env[name];
        }
        this.#writeAccounts();
    }

    get userId() {
        return this.#user === 'root' ? 0 : 1000;
    }

    get home() {
        return this.#user === 'root' ? '/root' : `/home/${this.#user}`;
    }

    /** The host path of a sandbox file; throws if it is not private to the test. */
    hostPath(inside) {
        const normal = path.posix.normalize(inside);
        for (const [seen, host] of this.#mountPoints) {
            if (normal === seen || normal.startsWith(`${seen}/`)) {
                return path.join(host, normal.slice(seen.length));
            }
        }
        throw new Error(`${inside} is not in a private directory of the sandbox`);
    }

    async writeFile(inside, content, { mode = undefined } = {}) {
        const host = this.hostPath(inside);
        fs.mkdirSync(path.dirname(host), { recursive: true });
        this.#boundFiles.delete(path.posix.normalize(inside));
        fs.rmSync(host, { force: true });
        fs.writeFileSync(host, content);
        if (mode !== undefined) fs.chmodSync(host, mode);
    }

    /** @param {BufferEncoding | null} encoding */
    async readFile(inside, encoding = 'utf8') {
        return fs.readFileSync(this.hostPath(inside), encoding);
    }

    async makeDirectory(inside) {
        fs.mkdirSync(this.hostPath(inside), { recursive: true });
    }

    async exists(inside) {
        return fs.existsSync(this.hostPath(inside));
    }

    async stat(inside) {
        return fs.lstatSync(this.hostPath(inside));
    }

    /** Names in a directory, sorted. */
    async list(inside) {
        return fs.readdirSync(this.hostPath(inside)).sort();
    }

    async remove(inside) {
        this.#boundFiles.delete(path.posix.normalize(inside));
        fs.rmSync(this.hostPath(inside), { recursive: true });
    }

    /** Puts a fake program first in PATH. */
    async fake(name, script) {
        await this.writeFile(`/fakes/${name}`, script, { mode: 0o755 });
    }

    /** A fake that records its arguments for callsOf, prints `output` and exits with `status`. */
    async recordingFake(name, { output = '', status = 0 } = {}) {
        await this.writeFile(`/fakecalls/${name}.output`, output);
        await this.fake(
            name,
            `#!/bin/bash
printf '%s\\0' "$#" "$@" >> /fakecalls/${name}
cat /fakecalls/${name}.output
exit ${status}
`,
        );
    }

    /** The argument lists with which a recording fake was called, in order. */
    async callsOf(name) {
        const host = this.hostPath(`/fakecalls/${name}`);
        if (!fs.existsSync(host)) return [];
        const words = fs.readFileSync(host, 'utf8').split('\0').slice(0, -1);
        const calls = [];
        while (words.length > 0) calls.push(words.splice(0, Number(words.shift())));
        return calls;
    }

    /** Shows a host file or directory read-only at a place of the sandbox. */
    bind(host, inside) {
        this.#extraMounts.push('--ro-bind', host, inside);
    }

    /** Shows host programs beside those of /usr/bin. */
    addPrograms(programs) {
        const shown = path.join(this.#directory, 'programs');
        directoryWithout(hidableDirectory, [], '/systemprograms', shown);
        for (const program of programs) {
            fs.copyFileSync(program, path.join(shown, path.basename(program)));
        }
        this.bind(hidableDirectory, '/systemprograms');
        this.bind(shown, hidableDirectory);
    }

    /**
     * Gives each later run an empty disk of that size at a place of the sandbox. What is written
     * there is gone after the run, and never on the host.
     */
    smallDisk(inside, bytes) {
        this.#extraMounts.push('--size', `${bytes}`, '--tmpfs', inside);
    }

    /** Runs a command to its end: {status, signal, stdout, stdoutBytes, stderr}. */
    async run(
        command,
        { input = '', timeoutMs = defaultTimeout, env = undefined, directory = undefined } = {},
    ) {
        const started = this.spawn(command, { env, directory });
        started.endInput(input);
        try {
            return await started.waitForExit(timeoutMs);
        } finally {
            this.#processes.delete(started);
        }
    }

    /** Starts a command whose input stays open; dispose ends what still runs. */
    spawn(command, { env = {}, directory = this.home } = {}) {
        const words = emulatedCommand(command);
        const args = [...this.#sandboxArguments(env, directory), '--', ...words];
        const started = new SandboxProcess(args, command.join(' ').slice(0, 200));
        this.#processes.add(started);
        return started;
    }

    async dispose() {
        for (const started of this.#processes) await started.kill();
        this.#processes.clear();
        removeTree(this.#directory);
    }

    #sandboxArguments(env, directory) {
        const args = [
            '--unshare-user',
            '--uid',
            `${this.userId}`,
            '--gid',
            `${this.userId}`,
            '--cap-drop',
            'ALL',
            '--unshare-pid',
            '--unshare-net',
            '--unshare-ipc',
            '--unshare-uts',
            '--hostname',
            'sandbox',
            '--die-with-parent',
            '--new-session',
            ...systemMounts(),
            '--tmpfs',
            '/var/log',
            '--tmpfs',
            '/var/tmp',
            '--proc',
            '/proc',
            '--dev',
            '/dev',
        ];
        for (const name of ['passwd', 'group']) {
            args.push('--ro-bind', path.join(this.#directory, name), `/etc/${name}`);
        }
        for (const [seen, host] of this.#mountPoints) args.push('--bind', host, seen);
        args.push('--ro-bind', scriptsDirectory, '/scripts', ...this.#extraMounts);
        for (const [inside, host] of this.#boundFiles) args.push('--ro-bind', host, inside);
        args.push('--remount-ro', '/', '--chdir', directory, '--clearenv');
        for (const [name, value] of Object.entries({ ...this.#environment, ...env })) {
            if (value !== undefined) args.push('--setenv', name, value);
        }
        return args;
    }

    #hidePrograms(hide) {
        for (const program of hide) {
            if (path.posix.dirname(program) !== hidableDirectory) {
                throw new Error(
                    `only programs of ${hidableDirectory} can be hidden, not ${program}`,
                );
            }
        }
        const installed = hide.filter((program) => fs.existsSync(program));
        if (installed.length === 0) return;
        const names = installed.map((program) => path.posix.basename(program));
        const links = path.join(this.#directory, 'programs');
        directoryWithout(hidableDirectory, names, '/systemprograms', links);
        this.#extraMounts.push('--ro-bind', hidableDirectory, '/systemprograms');
        this.#extraMounts.push('--ro-bind', links, hidableDirectory);
    }

    #addSuite() {
        if (!fs.existsSync(suiteDirectory)) {
            throw new Error(`${suiteDirectory} does not exist: build first, or set SUITE_DIR`);
        }
        const host = path.join(this.#directory, 'suite');
        this.#mountPoints.set('/suite', host);
        for (const [relative, file] of copySuite(suiteDirectory, host)) {
            this.#boundFiles.set(path.posix.join('/suite', relative), file);
        }
    }

    #writeAccounts() {
        const line = (name, id, home) => `${name}:x:${id}:${id}:${name}:${home}:/bin/bash\n`;
        let passwd = line('root', 0, '/root');
        let group = 'root:x:0:\n';
        if (this.#user !== 'root') {
            passwd += line(this.#user, this.userId, this.home);
            group += `${this.#user}:x:${this.userId}:\n`;
        }
        fs.writeFileSync(path.join(this.#directory, 'passwd'), passwd);
        fs.writeFileSync(path.join(this.#directory, 'group'), group);
    }
}
