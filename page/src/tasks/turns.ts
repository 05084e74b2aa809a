import { computed, ref, shallowRef, type Ref, type ShallowRef } from 'vue';
import type { Failure } from '@/client';
import { failureText, useTexts } from '../frame/texts';
import { useTask } from './task';

/** A failure as FailureNotice shows it. */
interface Problem {
    title: string;
    text: string;
}

interface Turns<Name extends string> {
    /** What came of the last action, in a sentence. */
    message: Ref<string>;
    /** Why the last action failed. */
    problem: ShallowRef<Problem | null>;
    running: Ref<boolean>;
    /** The action that has been running for long enough that a progress sign is due. */
    slow: Ref<Name | null>;
    /** Runs an action with message and problem cleared; does nothing while another one runs. */
    run: (name: Name, action: () => Promise<void>) => Promise<void>;
    /** Shows a failure under a title, which is given by its key. */
    fail: (title: string, failure: Failure) => void;
}

/** A view's readings and repairs, of which only one may run at a time. */
export function useTurns<Name extends string>(): Turns<Name> {
    const { t } = useTexts();
    const message = ref('');
    const problem = shallowRef<Problem | null>(null);
    const current = shallowRef<Name | null>(null);
    const task = useTask(async (action: () => Promise<void>) => {
        await action();
        return { kind: 'done', value: undefined } as const;
    });
    return {
        message,
        problem,
        running: task.running,
        slow: computed(() => (task.slow.value ? current.value : null)),
        async run(name, action) {
            if (task.running.value) return;
            current.value = name;
            problem.value = null;
            message.value = '';
            await task.run(action);
        },
        fail(title, failure) {
            problem.value = { title: t(title), text: failureText(t, failure) };
        },
    };
}
