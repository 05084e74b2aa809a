import { computed, ref, shallowRef, type ComputedRef, type Ref, type ShallowRef } from 'vue';
import type { Failure, Outcome } from '@/client';

/** How long an action may take before it shows a progress sign, in milliseconds. */
export const progressDelay = 500;

interface Task<Value, Arguments extends unknown[]> {
    running: Ref<boolean>;
    /** Running for long enough that a progress sign is due. */
    slow: Ref<boolean>;
    /** How it ended the last time. */
    outcome: ShallowRef<Outcome<Value> | null>;
    /** The value of that outcome; null if it failed. */
    value: ComputedRef<Value | null>;
    /** That outcome if it is a failure. */
    failure: ComputedRef<Failure | null>;
    /** Returns null if the action is still running: it is never started twice. */
    run: (...args: Arguments) => Promise<Outcome<Value> | null>;
}

/** An action of the library with its busy state. */
export function useTask<Value, Arguments extends unknown[]>(
    work: (...args: Arguments) => Promise<Outcome<Value>>,
): Task<Value, Arguments> {
    const running = ref(false);
    const slow = ref(false);
    const outcome = shallowRef<Outcome<Value> | null>(null);
    async function run(...args: Arguments): Promise<Outcome<Value> | null> {
        if (running.value) return null;
        running.value = true;
        const timer = setTimeout(() => {
            slow.value = true;
        }, progressDelay);
        try {
            outcome.value = await work(...args);
            return outcome.value;
        } finally {
            clearTimeout(timer);
            running.value = false;
            slow.value = false;
        }
    }
    return {
        running,
        slow,
        outcome,
        value: computed(() => (outcome.value?.kind === 'done' ? outcome.value.value : null)),
        failure: computed(() =>
            outcome.value && outcome.value.kind !== 'done' ? outcome.value : null,
        ),
        run,
    };
}
