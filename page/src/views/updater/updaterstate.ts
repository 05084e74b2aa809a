import { computed, ref, shallowRef } from 'vue';
import type { Client } from '@/client';
import { useTurns } from '@/tasks/turns';
import { useTexts } from '@/frame/texts';
import { startTestRun, type TestRun } from './testruns';

/** What the view knows of the updater, and all that it does to it. */
export function useUpdater(client: Client) {
    const { t } = useTexts();
    const readBack = client.task.isOffered('task.updater');
    const installed = ref<boolean | null>(null);
    /** Null when it cannot be read. */
    const configuration = shallowRef<Record<string, string> | null>(null);
    const log = ref<string | null>(null);
    const { message, problem, running, slow, run, fail } = useTurns<'busy'>();

    async function readLog(): Promise<boolean> {
        const outcome = await client.updateLog();
        log.value = outcome.kind === 'done' ? outcome.value : null;
        if (outcome.kind === 'done' || outcome.kind === 'failed') return true;
        fail('updater.failed', outcome);
        return false;
    }

    async function readConfiguration(): Promise<boolean> {
        const outcome = await client.updateConfiguration();
        configuration.value = outcome.kind === 'done' ? outcome.value : null;
        if (outcome.kind === 'done' || outcome.kind === 'failed') return true;
        fail('updater.failed', outcome);
        return false;
    }

    async function readAll(): Promise<void> {
        const support = await client.updaterInstalled();
        if (support.kind !== 'done') {
            fail('updater.failed', support);
            return;
        }
        installed.value = support.value;
        if ((await readConfiguration()) && (await readLog())) message.value = t('updater.read');
    }

    async function change(key: string, value: string): Promise<void> {
        const outcome = await client.changeUpdateConfiguration(key, value);
        if (outcome.kind !== 'done') {
            fail('updater.notSaved', outcome);
        } else if (await readConfiguration()) {
            // The command says "success" even when the file could not be written.
            const isThere = readBack || configuration.value?.[key] === value;
            if (isThere) message.value = t('updater.saved');
            else problem.value = { title: t('updater.notSaved'), text: t('updater.notWritable') };
        }
    }

    async function clear(): Promise<void> {
        const outcome = await client.clearUpdateLog();
        if (outcome.kind !== 'done') {
            fail('updater.log.notCleared', outcome);
        } else if (await readLog()) {
            if (!log.value) {
                message.value = t('updater.log.cleared');
            } else {
                problem.value = {
                    title: t('updater.log.notCleared'),
                    text: t('updater.log.notYours'),
                };
            }
        }
    }

    async function start(run: TestRun): Promise<void> {
        const outcome = await startTestRun(client, run);
        if (outcome.kind !== 'done') {
            fail('updater.notStarted', outcome);
        } else if (run !== 'daily' || (await readConfiguration())) {
            message.value = t('updater.started');
        }
    }

    const support = computed(() => {
        if (installed.value === null) return null;
        if (installed.value) return 'there';
        return configuration.value ? 'noProgram' : 'noConfiguration';
    });
    return {
        support,
        configuration,
        log,
        message,
        problem,
        running,
        slow: computed(() => slow.value !== null),
        read: () => run('busy', readAll),
        change: (key: string, value: string) => run('busy', () => change(key, value)),
        clear: () => run('busy', clear),
        start: (test: TestRun) => run('busy', () => start(test)),
    };
}
