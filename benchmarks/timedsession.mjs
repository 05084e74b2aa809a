// An assistantctl session for measuring.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { createInterface } from 'node:readline';

const longestWaitMs = 60_000;

/** An assistantctl session that times each answer. */
export class TimedSession {
    #process;
    #ended;
    #listeners = new Set();
    #lastId = 0;

    constructor(assistantctl, env) {
        this.#process = spawn(assistantctl, ['--session'], {
            env,
            stdio: ['pipe', 'pipe', 'inherit'],
        });
        this.#ended = once(this.#process, 'exit');
        createInterface({ input: this.#process.stdout }).on('line', (line) => {
            for (const listener of [...this.#listeners]) listener(line);
        });
    }

    /** Sends a command; gives the line with that text and the seconds to it and the first hit. */
    async secondsUntil(request, text) {
        const begin = process.hrtime.bigint();
        const elapsed = () => Number(process.hrtime.bigint() - begin) / 1e9;
        let firstHit;
        let listener;
        const arrival = new Promise((resolve, reject) => {
            const timer = setTimeout(() => reject(new Error(`no ${text}`)), longestWaitMs);
            listener = (line) => {
                if (line.includes('"startsearchfileCallBack"')) firstHit ??= elapsed();
                if (!line.includes(text)) return;
                clearTimeout(timer);
                resolve({ end: elapsed(), firstHit, line });
            };
        });
        this.#listeners.add(listener);
        this.#process.stdin.write(`${JSON.stringify(request)}\n`);
        try {
            return await arrival;
        } finally {
            this.#listeners.delete(listener);
        }
    }

    /** Sends a command; gives the seconds until its answer. */
    async secondsOf(command, args = {}, choose = []) {
        const id = `timed${++this.#lastId}`;
        return (await this.secondsUntil({ id, command, args, choose }, `"${id}"`)).end;
    }

    /** Throws if a measured command answers without a result. */
    async expectAnswer(command, args = {}, choose = []) {
        const id = `expected${++this.#lastId}`;
        const { line } = await this.secondsUntil({ id, command, args, choose }, `"${id}"`);
        const { result } = JSON.parse(line);
        if (result === undefined || result === 'error') throw new Error(`${command}: ${line}`);
    }

    get pid() {
        return this.#process.pid;
    }

    async search(keyword) {
        return this.secondsUntil(
            { command: 'startsearchfile', args: { keyword } },
            '"searchfilefinish"',
        );
    }

    async close() {
        const limit = setTimeout(() => this.#process.kill('SIGKILL'), longestWaitMs);
        this.#process.stdin.end();
        await this.#ended;
        clearTimeout(limit);
    }
}
