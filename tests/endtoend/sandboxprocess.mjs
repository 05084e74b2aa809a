import { spawn } from 'node:child_process';
import { once } from 'node:events';

import { emulation } from './emulated.mjs';

const outputLimit = 256 * 1024 * 1024;

/** The process may have just ended by itself. */
function killIfThere(pid) {
    try {
        process.kill(pid, 'SIGKILL');
    } catch (error) {
        if (error.code !== 'ESRCH') throw error;
    }
}

/** A process in a private root; its output is collected, and it never outlives the test. */
export class SandboxProcess {
    #child;
    #description;
    #chunks = { stdout: [], stderr: [] };
    #size = 0;
    #ended;
    #firstProcess;
    #spawnError = null;
    #overflow = false;
    #hasEnded = false;

    /** args: bubblewrap's own arguments and, behind "--", the command. */
    constructor(args, description) {
        this.#description = description;
        const emulated = emulation(4);
        this.#child = spawn('bwrap', ['--info-fd', '3', ...emulated.args, ...args], {
            stdio: ['pipe', 'pipe', 'pipe', 'pipe', ...emulated.stdio],
        });
        emulated.started();
        this.#firstProcess = this.#readFirstProcess(this.#child.stdio[3]);
        // A process may end before it has read its input; its exit status says whether it failed.
        this.#child.stdin.on('error', () => {});
        for (const name of ['stdout', 'stderr']) {
            this.#child[name].on('data', (chunk) => this.#collect(name, chunk));
        }
        this.#ended = new Promise((resolve) => {
            this.#child.once('close', (status, signal) => resolve({ status, signal }));
            this.#child.once('error', (error) => {
                this.#spawnError = error;
                resolve({ status: null, signal: null });
            });
        }).then((end) => {
            this.#hasEnded = true;
            return end;
        });
    }

    get stdoutBytes() {
        return Buffer.concat(this.#chunks.stdout);
    }

    get stdout() {
        return this.stdoutBytes.toString('utf8');
    }

    get stderr() {
        return Buffer.concat(this.#chunks.stderr).toString('utf8');
    }

    get isRunning() {
        return (
            this.#child.pid !== undefined &&
            this.#child.exitCode === null &&
            this.#child.signalCode === null
        );
    }

    /** Whether it has ended and all its output has been read. */
    get hasEnded() {
        return this.#hasEnded;
    }

    /** Calls listener with each piece of standard output, as bytes. */
    onStdout(listener) {
        this.#child.stdout.on('data', listener);
    }

    /** Sends text or bytes to standard input and waits until the pipe has taken them. */
    async write(data) {
        if (!this.#child.stdin.write(data) && this.isRunning) {
            await Promise.race([once(this.#child.stdin, 'drain'), this.#ended]);
        }
    }

    endInput(data) {
        this.#child.stdin.end(data);
    }

    /**
     * Waits for the end: {status, signal, stdout, stdoutBytes, stderr}. When the time runs out the
     * process is ended and the promise rejected.
     */
    async waitForExit(timeoutMs) {
        let timer;
        const timeout = new Promise((resolve) => {
            timer = setTimeout(resolve, timeoutMs, null);
        });
        const end = await Promise.race([this.#ended, timeout]);
        clearTimeout(timer);
        if (end === null) {
            await this.kill();
            throw new Error(`${this.#description} did not end in ${timeoutMs} ms\n${this.#tail()}`);
        }
        if (this.#spawnError) throw this.#spawnError;
        if (this.#overflow) {
            throw new Error(`${this.#description} printed more than ${outputLimit} bytes`);
        }
        return { ...end, stdout: this.stdout, stdoutBytes: this.stdoutBytes, stderr: this.stderr };
    }

    /**
     * Ends everything in the process namespace by killing its first process. Bubblewrap itself is
     * not killed: during set-up that would leave the namespace running.
     */
    async kill() {
        const firstProcess = await this.#firstProcess;
        if (this.isRunning && firstProcess) killIfThere(firstProcess);
        await this.#ended;
    }

    /** The host's id of the namespace's first process; undefined if bubblewrap started none. */
    async #readFirstProcess(stream) {
        let information = '';
        stream.on('error', () => {});
        for await (const chunk of stream) information += chunk;
        return information === '' ? undefined : JSON.parse(information)['child-pid'];
    }

    #collect(name, chunk) {
        this.#size += chunk.length;
        if (this.#size > outputLimit) {
            if (!this.#overflow) this.kill();
            this.#overflow = true;
            return;
        }
        this.#chunks[name].push(chunk);
    }

    #tail() {
        return `stdout: ${this.stdout.slice(-2000)}\nstderr: ${this.stderr.slice(-2000)}`;
    }
}
