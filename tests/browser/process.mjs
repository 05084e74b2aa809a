import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { readFileSync } from 'node:fs';
import { createServer } from 'node:net';

/** Starts a program that ends when this process ends, even if this process is killed. */
export function start(program, args, options) {
    return spawn('setpriv', ['--pdeathsig', 'KILL', program, ...args], options);
}

/** Kills a process that start() began, and waits until it is gone. */
export async function end(child) {
    if (child.exitCode !== null || child.signalCode !== null || child.pid === undefined) return;
    const gone = once(child, 'exit');
    child.kill('SIGKILL');
    await gone;
}

/** The id of a process's parent; 0 if the process has ended. */
export function parentOf(pid) {
    try {
        return Number(/\) \S (\d+)/.exec(readFileSync(`/proc/${pid}/stat`, 'utf8'))[1]);
    } catch {
        return 0;
    }
}

/** Ten ports for each process, below the range from which the kernel assigns ports. */
const ownPorts = Array.from({ length: 10 }, (_, at) => 10_000 + 10 * (process.pid % 2_000) + at);

/** A port that nobody listens on. It stays free until the program that is told of it listens. */
export async function freePort() {
    for (let tries = 0; tries < ownPorts.length; tries += 1) {
        const port = ownPorts.shift();
        ownPorts.push(port);
        const server = createServer();
        try {
            await once(server.listen(port, '127.0.0.1'), 'listening');
        } catch {
            continue; // in use
        }
        server.close();
        await once(server, 'close');
        return port;
    }
    throw new Error(`all of the ports ${ownPorts.join(' ')} are in use`);
}
