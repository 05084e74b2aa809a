import { computed, ref, shallowRef } from 'vue';
import type { CheckFinding, Client, Failure } from '@/client';
import { progressDelay } from '@/tasks/task';
import { answers, type CheckRequest } from './checks';

/** After this many milliseconds without a finding, waiting for it can be given up. */
export const patience = 20_000;

/**
 * One check at a time: asked for, waited for, answered. The library would stop its whole window
 * for a second check until the first one has ended, so that none is started before that.
 * `receive` gets a finding that is the answer of the start itself.
 */
export function useCheckRun(
    client: Pick<Client, 'startCheck'>,
    receive: (finding: CheckFinding) => void = () => undefined,
) {
    const request = shallowRef<CheckRequest | null>(null);
    const refusal = shallowRef<Failure | null>(null);
    const slow = ref(false);
    const long = ref(false);
    let timers: ReturnType<typeof setTimeout>[] = [];

    function end(): void {
        timers.forEach(clearTimeout);
        timers = [];
        request.value = null;
        slow.value = false;
        long.value = false;
    }

    return {
        running: computed(() => request.value !== null),
        request,
        refusal,
        /** Running for long enough that a progress sign is due. */
        slow,
        /** Running for so long that giving up is offered. */
        long,
        async start(asked: CheckRequest): Promise<void> {
            if (request.value) return;
            request.value = asked;
            refusal.value = null;
            timers = [
                setTimeout(() => {
                    slow.value = true;
                }, progressDelay),
                setTimeout(() => {
                    long.value = true;
                }, patience),
            ];
            const outcome = await client.startCheck(asked.check, asked.component, asked.argument);
            if (request.value !== asked) return;
            if (outcome.kind !== 'done') {
                refusal.value = outcome;
                end();
            } else if (outcome.value) {
                receive(outcome.value);
            }
        },
        /** Takes a finding; true if it is the one that was waited for. */
        receive(finding: CheckFinding): boolean {
            if (!request.value || !answers(finding, request.value)) return false;
            end();
            return true;
        },
        /** Stops waiting; the library still keeps the check's result. */
        giveUp: end,
    };
}
