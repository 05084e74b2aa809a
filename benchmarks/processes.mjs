// Runs programs and measures their time and memory.

import { parentOf } from 'browser-driver';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { readFileSync, readdirSync } from 'node:fs';

const timeCommand = '/usr/bin/time';
const longestRunMs = 600_000;

/** Runs a program to its end; gives the seconds that it took. */
export async function secondsOf(program, args, options = {}) {
    const begin = process.hrtime.bigint();
    const child = spawn(program, args, { stdio: 'ignore', timeout: longestRunMs, ...options });
    const [status, signal] = await once(child, 'exit');
    const seconds = Number(process.hrtime.bigint() - begin) / 1e9;
    if (status !== 0) {
        throw new Error(`${program} ${args.join(' ')} ended with ${status ?? signal}`);
    }
    return seconds;
}

/** The largest resident memory of a finished program, in MiB. */
export async function peakMemoryOf(program, args, options = {}) {
    const child = spawn(timeCommand, ['-f', '%M', program, ...args], {
        timeout: longestRunMs,
        ...options,
        stdio: ['ignore', 'ignore', 'pipe'],
    });
    let output = '';
    child.stderr.on('data', (data) => (output += data));
    const [status, signal] = await once(child, 'close');
    if (status !== 0) {
        throw new Error(`${program} ${args.join(' ')} ended with ${status ?? signal}`);
    }
    return Number(output.trim().split('\n').pop()) / 1024;
}

function processTree(root) {
    const pids = readdirSync('/proc')
        .filter((name) => /^\d+$/.test(name))
        .map(Number);
    const tree = new Set([root]);
    for (let size = 0; size !== tree.size; ) {
        size = tree.size;
        for (const pid of pids) if (tree.has(parentOf(pid))) tree.add(pid);
    }
    return [...tree];
}

/** Memory of a process and its descendants in MiB, shared pages divided among their users. */
function memoryOf(root) {
    const kibibytes = processTree(root).map((pid) => {
        try {
            return Number(
                /^Pss:\s+(\d+)/m.exec(readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8'))[1],
            );
        } catch {
            return 0;
        }
    });
    return kibibytes.reduce((sum, value) => sum + value, 0) / 1024;
}

/** The same, once it has stopped changing; ten seconds at most. */
export async function settledMemoryOf(root) {
    let last = memoryOf(root);
    for (let attempt = 0; attempt < 20; attempt++) {
        await new Promise((resolve) => setTimeout(resolve, 500));
        const now = memoryOf(root);
        if (Math.abs(now - last) < 0.01 * last) return now;
        last = now;
    }
    return last;
}
