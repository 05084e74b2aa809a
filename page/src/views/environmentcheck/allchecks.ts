import { computed, ref, shallowRef } from 'vue';
import type { CheckFinding, Client, Failure } from '@/client';
import { checks, components, type CheckRequest } from './checks';

/** A check that gave no answer. */
export interface Unanswered {
    request: CheckRequest;
    failure: Failure;
}

const requests: CheckRequest[] = components.flatMap((component) =>
    checks.map((check) => ({ check, component, argument: '' })),
);

/**
 * All checks of all programs, one after the other, in a shell whose check gives its answer.
 * `receive` gets each as it comes.
 */
export function useAllChecks(
    client: Pick<Client, 'startCheck' | 'task'>,
    receive: (finding: CheckFinding) => void,
) {
    /** How many have ended; null before the first run. */
    const ended = ref<number | null>(null);
    const current = shallowRef<CheckRequest | null>(null);
    const unanswered = shallowRef<Unanswered[]>([]);
    const stopped = ref(false);

    async function ask(request: CheckRequest): Promise<void> {
        const outcome = await client.startCheck(request.check, request.component);
        if (outcome.kind === 'stopped') {
            stopped.value = true;
        } else if (outcome.kind !== 'done') {
            unanswered.value = [...unanswered.value, { request, failure: outcome }];
        } else if (outcome.value) {
            receive(outcome.value);
        }
    }

    return {
        ended,
        current,
        unanswered,
        stopped,
        all: requests.length,
        running: computed(() => current.value !== null),
        async run(): Promise<void> {
            if (current.value) return;
            ended.value = 0;
            stopped.value = false;
            unanswered.value = [];
            for (const request of requests) {
                current.value = request;
                await ask(request);
                if (stopped.value) break;
                ended.value += 1;
            }
            current.value = null;
        },
        async stop(): Promise<void> {
            stopped.value = true;
            await client.task.cancel('task.check');
        },
    };
}
