import { members, text, word, type Decoder } from './decode';
import { type Outcome, UnreadableAnswer } from './outcome';
import type { CommandName, Envelope, Host, OperationName, TaskName } from './host';

const taskEnds = ['done', 'failed', 'cancelled', 'dismissed'] as const;

/** Sends commands to the host, if any, and turns answers into outcomes. */
export class Caller {
    constructor(private readonly host: () => Host | undefined) {}

    /** Whether there is a host at all. */
    get hasHost(): boolean {
        return this.host() !== undefined;
    }

    /** A command that answers with a result, which `decode` reads. */
    async ask<Value>(
        command: CommandName,
        decode: Decoder<Value>,
        args?: Record<string, unknown>,
    ): Promise<Outcome<Value>> {
        return this.decoded(await this.send(command, args), decode);
    }

    /** An operation of the shell itself; `listen` receives the lines before its answer. */
    async operate<Value>(
        operation: OperationName,
        decode: Decoder<Value>,
        args?: Record<string, unknown>,
        listen?: (line: unknown) => void,
    ): Promise<Outcome<Value>> {
        const receive = (line: unknown): void => {
            try {
                listen?.(line);
            } catch (error) {
                if (!(error instanceof UnreadableAnswer)) throw error;
                console.warn(`An unreadable line of ${operation} was left out: ${error.message}`);
            }
        };
        return this.decoded(await this.send(operation, args, receive), decode);
    }

    /** A task of the shell; one whose dialog the user cancelled has failed, as with commands. */
    async perform<Value>(
        task: TaskName,
        decode: Decoder<Value>,
        args: Record<string, unknown> = {},
    ): Promise<Outcome<Value>> {
        const language = globalThis.document?.documentElement.lang;
        const ended = await this.operate(
            task,
            (result): Outcome<Value> => {
                const { end, reason } = members(result);
                switch (word(end, taskEnds)) {
                    case 'done':
                        return { kind: 'done', value: decode(result) };
                    case 'failed':
                        return { kind: 'broken', reason: text(reason) };
                    case 'cancelled':
                        return { kind: 'stopped' };
                    case 'dismissed':
                        return { kind: 'failed' };
                }
            },
            { ...args, language },
        );
        return ended.kind === 'done' ? ended.value : ended;
    }

    /** A command, in a process of its own where the shell can cancel it. */
    async askAside<Value>(
        task: TaskName,
        command: CommandName,
        decode: Decoder<Value>,
        args?: Record<string, unknown>,
    ): Promise<Outcome<Value>> {
        if (!this.offers(task)) return this.ask(command, decode, args);
        const envelope = (result: unknown): Envelope => members(members(result).envelope);
        return this.decoded(await this.perform(task, envelope, args), decode);
    }

    /** Whether the host has an operation of its own. */
    offers(operation: OperationName): boolean {
        return this.host()?.operations?.includes(operation) ?? false;
    }

    private decoded<Value>(sent: Outcome<Envelope>, decode: Decoder<Value>): Outcome<Value> {
        if (sent.kind !== 'done') return sent;
        const { result, incomplete } = sent.value;
        if (incomplete) return { kind: 'incomplete' };
        if (result === undefined) return { kind: 'unanswered' };
        if (result === 'error') return { kind: 'failed' };
        if (result === 'parame error') return { kind: 'badRequest' };
        try {
            return { kind: 'done', value: decode(result) };
        } catch (error) {
            if (error instanceof UnreadableAnswer) {
                return { kind: 'unreadable', reason: error.message };
            }
            throw error;
        }
    }

    /** A command that sets no result by design: that it ran is all there is to know. */
    async tell(command: CommandName, args?: Record<string, unknown>): Promise<Outcome<void>> {
        const sent = await this.send(command, args);
        return sent.kind === 'done' ? { kind: 'done', value: undefined } : sent;
    }

    private async send(
        command: CommandName | OperationName,
        args?: Record<string, unknown>,
        listen?: (line: unknown) => void,
    ): Promise<Outcome<Envelope>> {
        const host = this.host();
        if (!host) return { kind: 'absent' };
        try {
            const envelope = await (listen
                ? host.call(command, args, listen)
                : host.call(command, args));
            if (typeof envelope !== 'object' || envelope === null) {
                return { kind: 'unreadable', reason: 'no envelope' };
            }
            return { kind: 'done', value: envelope };
        } catch (error) {
            const reason = error instanceof Error ? error.message : String(error);
            return { kind: 'refused', reason };
        }
    }
}
