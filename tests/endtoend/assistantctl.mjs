import { waitFor } from 'browser-driver';

const program = '/suite/office/assistantctl';
const timeout = 90_000;

/** The events in assistantctl's output, one JSON object per line; throws on anything else. */
export function parseEvents(output) {
    return output
        .split('\n')
        .slice(0, -1)
        .map((line) => {
            const event = JSON.parse(line);
            if (typeof event.type !== 'string') throw new Error(`an event without type: ${line}`);
            return event;
        });
}

function commandLineArgument([name, value]) {
    return typeof value === 'string' ? `${name}=${value}` : `${name}:=${JSON.stringify(value)}`;
}

/** @param {Record<string, any>} options */
function commandLineOptions({ page, choose = [], wait, until, open, trace, pretty }) {
    const options = [];
    if (page !== undefined) options.push('--page', page);
    for (const path of choose) options.push('--choose', path);
    if (wait !== undefined) options.push('--wait', `${wait}`);
    if (until !== undefined) options.push('--until', until);
    for (const [name, on] of Object.entries({ open, trace, pretty })) {
        if (on) options.push(`--${name}`);
    }
    return options;
}

/** Runs assistantctl with a raw argument list: {status, stdout, stderr}. */
export async function runAssistant(root, args, options = {}) {
    return root.run([program, ...args], { timeoutMs: timeout, ...options });
}

/**
 * Sends one command from the command line: {status, events, answer, stderr}; answer is the answer
 * event, undefined when there was none. Strings go as NAME=VALUE, other values as NAME:=JSON.
 * options are those of the program by name (choose is a list) and env, directory, timeoutMs.
 *
 * @param {Record<string, any>} options
 */
export async function runCommand(root, command, args = {}, options = {}) {
    const { env, directory, timeoutMs = timeout, ...programOptions } = options;
    const words = [
        ...commandLineOptions(programOptions),
        command,
        ...Object.entries(args).map(commandLineArgument),
    ];
    const end = await root.run([program, ...words], { env, directory, timeoutMs });
    const events = programOptions.pretty ? [] : parseEvents(end.stdout);
    return {
        status: end.status,
        events,
        answer: events.find((event) => event.type === 'answer'),
        stdout: end.stdout,
        stderr: end.stderr,
    };
}

/** The trace event of a dialog in which a file to open was chosen. */
export const openDialog = (chosen, filters = []) => ({
    type: 'dialog',
    mode: 'open',
    caption: 'Open File',
    directory: '/home/user',
    name: '',
    filters,
    chosen,
});

/** An assistantctl session: lines go in, events come out, both in order. */
export class Session {
    #process;
    #rest = Buffer.alloc(0);
    #claimed = new Set();
    #nextId = 1;
    #fault = null;

    /** Every event so far, in order. */
    events = [];

    /** Starts a session in the root; trace: false leaves out the trace events. */
    static start(root, { trace = true, env = undefined, directory = undefined } = {}) {
        return new Session(root, trace, { env, directory });
    }

    constructor(root, trace, options) {
        const words = [program, '--session', ...(trace ? ['--trace'] : [])];
        this.#process = root.spawn(words, options);
        this.#process.onStdout((chunk) => this.#take(chunk));
    }

    /**
     * Sends a command and waits for its answer event, or for the error event of the same id.
     * request: {command, args, page, choose}.
     */
    async send(request, { timeoutMs = timeout } = {}) {
        const id = request.id ?? this.#nextId++;
        await this.sendLine(JSON.stringify({ id, ...request }));
        const belongs = (event) => ['answer', 'error'].includes(event.type) && event.id === id;
        return this.#claim(belongs, `the answer of ${request.command}`, timeoutMs);
    }

    /** Sends a line unchanged: for malformed requests. */
    async sendLine(line) {
        await this.sendBytes(`${line}\n`);
    }

    async sendBytes(bytes) {
        await this.#process.write(bytes);
    }

    /** The next later answer of that callback name that no earlier call has returned. */
    async callback(name, { timeoutMs = timeout } = {}) {
        const belongs = (event) => event.type === 'callback' && event.callback === name;
        return this.#claim(belongs, `the callback ${name}`, timeoutMs);
    }

    /** The next error event that no earlier call has returned. */
    async error({ timeoutMs = timeout } = {}) {
        return this.#claim((event) => event.type === 'error', 'an error event', timeoutMs);
    }

    /** Lets the program process events for that many milliseconds. */
    async wait(milliseconds) {
        await this.sendLine(JSON.stringify({ wait: milliseconds }));
        return this.#claim(
            ({ type }) => type === 'waited',
            'the end of a wait',
            milliseconds + timeout,
        );
    }

    /** Lets the program itself wait for a callback; the event has timeout: true when none came. */
    async until(callback, milliseconds) {
        await this.sendLine(JSON.stringify({ until: callback, timeout: milliseconds }));
        return this.#claim(
            ({ type }) => type === 'waited',
            `the end of a wait for ${callback}`,
            milliseconds + timeout,
        );
    }

    /** The trace events of one type, in order. */
    traced(type) {
        return this.events.filter((event) => event.type === type);
    }

    /** Ends the input and waits for the program's end: {status, events, stderr}. */
    async close({ timeoutMs = timeout } = {}) {
        this.#process.endInput();
        const end = await this.#process.waitForExit(timeoutMs);
        this.#throwFault();
        return { status: end.status, events: this.events, stderr: end.stderr };
    }

    #take(chunk) {
        this.#rest = Buffer.concat([this.#rest, chunk]);
        const end = this.#rest.lastIndexOf('\n') + 1;
        if (end === 0) return;
        const lines = this.#rest.subarray(0, end).toString('utf8');
        this.#rest = this.#rest.subarray(end);
        try {
            this.events.push(...parseEvents(lines));
        } catch (error) {
            this.#fault = error;
        }
    }

    async #claim(belongs, what, timeoutMs) {
        const found = await waitFor(
            () => {
                this.#throwFault();
                const index = this.events.findIndex(
                    (event, at) => !this.#claimed.has(at) && belongs(event),
                );
                if (index >= 0) {
                    this.#claimed.add(index);
                    return this.events[index];
                }
                if (this.#process.hasEnded) {
                    throw new Error(`assistantctl ended before ${what}: ${this.#process.stderr}`);
                }
                return null;
            },
            { timeoutMs, what },
        );
        return found;
    }

    #throwFault() {
        if (this.#fault) throw this.#fault;
    }
}
