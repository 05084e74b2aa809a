import { spawn } from 'node:child_process';
import { once } from 'node:events';

/** Starts a program that ends with the test run, even when that is killed. */
export function start(program, args, options) {
    return spawn('setpriv', ['--pdeathsig', 'KILL', program, ...args], options);
}

/** Ends a process that a test started, and waits until it is gone. */
export async function end(child) {
    if (child.exitCode !== null || child.signalCode !== null || child.pid === undefined) return;
    const gone = once(child, 'exit');
    child.kill('SIGKILL');
    await gone;
}
