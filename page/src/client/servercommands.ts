import type { Caller } from './wire/caller';
import { base64Text, list, members, number, text } from './wire/decode';

/** Header or form-field rows. The wire cannot carry ":" or ";" in either side. */
export type NamedValues = { name: string; value: string }[];

export interface ServerRequest {
    url: string;
    functionName: string;
    headers: NamedValues;
    fields: NamedValues;
}

/** The server's answer; status 0 means that it never answered. */
export type ServerAnswer = { good: true } | { good: false; status: number; body: string };

function serverAnswer(result: unknown): ServerAnswer {
    if (result === 'success') return { good: true };
    const answer = base64Text(result);
    const cut = answer.indexOf(':');
    return {
        good: false,
        status: Number.parseInt(answer.slice(0, Math.max(cut, 0)), 10) || 0,
        body: answer.slice(cut + 1),
    };
}

function joined(rows: NamedValues): string {
    return rows.map(({ name, value }) => `${name}:${value}`).join(';');
}

/** A request as it is sent. */
interface PlainRequest {
    method: 'GET' | 'POST';
    url: string;
    headers: NamedValues;
    body: string;
}

const steps = ['name', 'connect', 'encrypt', 'firstByte', 'whole'] as const;
export type Step = (typeof steps)[number];

/** An answer with what it took. */
export interface TimedAnswer {
    /** 0 if the server never answered. */
    status: number;
    /** Why it did not, as the program says it. */
    problem: string;
    /** When each step had ended, in milliseconds since the start; 0 for one that was not needed. */
    times: Record<Step, number>;
    /** Of the body, in bytes. */
    size: number;
    /** The number of the machine that answered. */
    address: string;
    protocol: string;
    headers: NamedValues;
    /** At most its first 2 MiB. */
    body: string;
}

function timedAnswer(result: unknown): TimedAnswer {
    const answer = members(result);
    const times = members(answer.times);
    const told = steps.map((step): [Step, number] => [step, number(times[step])]);
    return {
        status: number(answer.status),
        problem: text(answer.problem),
        times: Object.fromEntries(told) as Record<Step, number>,
        size: number(answer.size),
        address: text(answer.address),
        protocol: text(answer.protocol),
        headers: list(answer.headers).map((header) => {
            const { name, value } = members(header);
            return { name: text(name), value: text(value) };
        }),
        body: text(answer.body),
    };
}

/** Requests that are timed, in a shell that can. */
export function serverOperations(caller: Caller) {
    return {
        get isTimed(): boolean {
            return caller.offers('task.request');
        },
        send: (request: PlainRequest) =>
            caller.perform('task.request', timedAnswer, { ...request }),
    };
}

/** Test requests to a document server. */
export function serverCommands(caller: Caller) {
    return {
        testServer: (request: ServerRequest) =>
            caller.askAside('task.server', 'openremoveurlcheck', serverAnswer, {
                urlpath: request.url,
                funcname: request.functionName,
                reqheader: joined(request.headers),
                reqtable: joined(request.fields),
            }),
    };
}
