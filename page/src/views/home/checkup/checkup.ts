import { computed, ref, shallowReactive, shallowRef, watch } from 'vue';
import type { Client, Failure, Outcome } from '@/client';
import {
    findingId,
    stepNames,
    type Finding,
    type RepairName,
    type StepName,
    type StepResult,
} from './finding';
import { readIgnored, withIgnored, withoutIgnored, writeIgnored } from './ignored';
import { diagnoses, repairs } from './steps';
import { pause } from '@/tasks/settle';

/** The state of one diagnosis; "tooLate": the check-up stopped waiting for it. */
export type StepState =
    | { state: 'waiting' | 'running' | 'tooLate' }
    | { state: 'failed'; failure: Failure }
    | { state: 'done'; result: StepResult };

/** The result of a repair; "unchanged": checked again, and the problem is still there. */
export type RepairState = 'running' | 'repaired' | 'unchanged' | Failure;

export interface Patience {
    /** How long one diagnosis may take, in milliseconds. */
    step: number;
    /** Repairs run on after their answer: how often to look again, and how far apart. */
    looks: number;
    between: number;
}

const defaultPatience: Patience = { step: 60_000, looks: 10, between: 1000 };

/** Null when the answer takes longer; it is then ignored. */
async function within<Value>(work: Promise<Value>, milliseconds: number): Promise<Value | null> {
    let timer: ReturnType<typeof setTimeout> | undefined;
    const late = new Promise<null>((resolve) => {
        timer = setTimeout(() => resolve(null), milliseconds);
    });
    try {
        return await Promise.race([work, late]);
    } finally {
        clearTimeout(timer);
    }
}

function stateOf(outcome: Outcome<StepResult> | null): StepState {
    if (outcome === null) return { state: 'tooLate' };
    if (outcome.kind === 'done') return { state: 'done', result: outcome.value };
    return { state: 'failed', failure: outcome };
}

/** The quick diagnoses one after the other, what they found, and their repairs. */
export function useCheckup(client: Client, patience: Patience = defaultPatience) {
    const steps = shallowReactive(
        new Map<StepName, StepState>(stepNames.map((name) => [name, { state: 'waiting' }])),
    );
    const running = ref(false);
    const finishedAt = shallowRef<Date | null>(null);
    const ignored = shallowRef(readIgnored());
    /** By the kind of what was repaired, for which there is only one at a time. */
    const repaired = shallowReactive(new Map<string, RepairState>());

    watch(ignored, writeIgnored);

    const all = computed(() =>
        stepNames.flatMap((name) => {
            const step = steps.get(name);
            return step?.state === 'done' ? step.result.findings : [];
        }),
    );
    const isIgnored = (finding: Finding): boolean => ignored.value.includes(findingId(finding));
    const ended = computed(
        () =>
            [...steps.values()].filter(({ state }) => state !== 'waiting' && state !== 'running')
                .length,
    );
    const current = computed(
        () => stepNames.find((name) => steps.get(name)?.state === 'running') ?? null,
    );

    async function check(name: StepName): Promise<StepState> {
        const state = stateOf(await within(diagnoses[name](client), patience.step));
        steps.set(name, state);
        if (state.state === 'done') {
            // A problem that is back was not repaired.
            state.result.findings.forEach(({ kind }) => {
                if (repaired.get(kind) === 'repaired') repaired.delete(kind);
            });
        }
        return state;
    }

    /** Makes all diagnoses; it cannot be started twice. */
    async function run(): Promise<void> {
        if (running.value) return;
        running.value = true;
        repaired.clear();
        stepNames.forEach((name) => steps.set(name, { state: 'waiting' }));
        for (const name of stepNames) {
            steps.set(name, { state: 'running' });
            await check(name);
        }
        finishedAt.value = new Date();
        running.value = false;
    }

    /** Makes one diagnosis again, once the check-up has ended. */
    async function runAgain(name: StepName): Promise<void> {
        if (running.value || steps.get(name)?.state === 'waiting') return;
        await check(name);
    }

    function kindsOf(state: StepState | undefined): string[] {
        return state?.state === 'done' ? state.result.findings.map(({ kind }) => kind) : [];
    }

    /**
     * The problem must be gone twice, with no other in its place: a repair may first remove and
     * then restore.
     */
    async function settled({ step, kind }: Finding): Promise<RepairState> {
        const others = kindsOf(steps.get(step)).filter((known) => known !== kind);
        let away = 0;
        for (let look = 0; look < patience.looks && away < 2; look += 1) {
            await pause(patience.between);
            const state = await check(step);
            if (state.state === 'failed') return state.failure;
            const gone =
                state.state === 'done' && kindsOf(state).every((found) => others.includes(found));
            away = gone ? away + 1 : 0;
        }
        return away > 0 ? 'repaired' : 'unchanged';
    }

    /** Repairs and checks again until the problem is gone or stays. */
    async function repair(finding: Finding, name: RepairName): Promise<void> {
        if (running.value || [...repaired.values()].includes('running')) return;
        repaired.set(finding.kind, 'running');
        const outcome = await within(repairs[name](client), patience.step);
        if (outcome === null) repaired.set(finding.kind, 'unchanged');
        else if (outcome.kind !== 'done') repaired.set(finding.kind, outcome);
        else repaired.set(finding.kind, await settled(finding));
    }

    return {
        steps,
        running,
        finishedAt,
        ended,
        current,
        repaired,
        findings: computed(() => all.value.filter((finding) => !isIgnored(finding))),
        ignoredFindings: computed(() => all.value.filter(isIgnored)),
        run,
        runAgain,
        repair,
        ignore(finding: Finding): void {
            ignored.value = withIgnored(ignored.value, findingId(finding));
        },
        noticeAgain(finding: Finding): void {
            ignored.value = withoutIgnored(ignored.value, findingId(finding));
        },
    };
}
