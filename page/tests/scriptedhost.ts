import { createClient } from '@/client';
import type { Envelope } from '@/client/wire/host';

interface Sent {
    command: string;
    args: Record<string, unknown> | undefined;
}

/** An answer, for an operation of the shell with the lines before it. */
export type Answer = Error | (Envelope & { lines?: unknown[] });

/** A client over a host that gives the scripted answers; a command without one is refused. */
export function scriptedClient(answers: Record<string, Answer>, operations?: readonly string[]) {
    const sent: Sent[] = [];
    const target: Partial<Record<string, (envelope: Envelope) => void>> = {};
    const client = createClient(
        () => ({
            theme: 'light',
            language: 'en_US',
            operations,
            call(command, args, listen) {
                sent.push({ command, args });
                const answer = answers[command] ?? new Error(`no such command: ${command}`);
                if (answer instanceof Error) return Promise.reject(answer);
                const { lines = [], ...envelope } = answer;
                lines.forEach((line) => listen?.(line));
                return Promise.resolve(envelope);
            },
        }),
        target,
    );
    return { client, sent, target };
}

export function base64(text: string): string {
    return Buffer.from(text, 'utf8').toString('base64');
}
