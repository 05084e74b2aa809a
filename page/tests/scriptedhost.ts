import { createClient } from '@/client';
import type { Envelope } from '@/client/wire';

interface Sent {
    command: string;
    args: Record<string, unknown> | undefined;
}

/** A client over a host that gives the scripted answers; a command without one is refused. */
export function scriptedClient(answers: Record<string, Envelope | Error>) {
    const sent: Sent[] = [];
    const target: Partial<Record<string, (envelope: Envelope) => void>> = {};
    const client = createClient(
        () => ({
            theme: 'light',
            language: 'en_US',
            call(command, args) {
                sent.push({ command, args });
                const answer = answers[command] ?? new Error(`no such command: ${command}`);
                return answer instanceof Error ? Promise.reject(answer) : Promise.resolve(answer);
            },
        }),
        target,
    );
    return { client, sent, target };
}

export function base64(text: string): string {
    return Buffer.from(text, 'utf8').toString('base64');
}
