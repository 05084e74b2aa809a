import type { Caller } from './wire/caller';
import { base64Text } from './wire/decode';

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
