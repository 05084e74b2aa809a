import { ref, shallowRef } from 'vue';
import type { Client, PlannedChange } from '@/client';
import type { Checkup } from './checkup';
import type { FindingGroup } from './groups';
import type { Repairs } from './repairs';

/** One repair among all that are made together. */
export interface Step {
    group: FindingGroup;
    repair: string;
    plan: number;
    changes: PlannedChange[];
}

/** What all recommended repairs would change, shown before any is made. */
interface WholePlan {
    steps: Step[];
    /** What cannot be fixed from here. */
    left: FindingGroup[];
}

const isOwn = ({ kind }: PlannedChange): boolean => kind !== 'command';

/** All recommended repairs at once: planned on each other, shown as one, each with its own undo. */
export function useFixAll(
    { doctor }: Client,
    language: () => string,
    checkup: Checkup,
    repairs: Repairs,
) {
    const whole = shallowRef<WholePlan | null>(null);
    /** How many steps are done, while they are made. */
    const made = ref<number | null>(null);

    /** The repair of a group, if it can be made after those steps. */
    async function planned(group: FindingGroup, before: Step[]): Promise<Step | null> {
        const [repair] = group.repairs;
        if (repair === undefined) return null;
        const numbers = group.findings.map((finding) => finding.number);
        const after = before.map(({ plan }) => plan);
        const outcome = await doctor.planNext(numbers, repair, after);
        if (outcome.kind !== 'done' || outcome.value.refusal) return null;
        const changes = outcome.value.changes.filter(isOwn);
        return changes.length ? { group, repair, plan: outcome.value.number, changes } : null;
    }

    return {
        whole,
        made,
        leave(): void {
            whole.value = null;
        },
        prepare: () =>
            repairs.alone(async () => {
                repairs.leave();
                const plan: WholePlan = { steps: [], left: [] };
                for (const group of checkup.groups.value) {
                    const step = await planned(group, plan.steps);
                    if (step) plan.steps.push(step);
                    else plan.left.push(group);
                }
                whole.value = plan;
            }),
        /** Makes what is shown, one after the other. */
        fix: () =>
            repairs.alone(async () => {
                const steps = whole.value?.steps ?? [];
                made.value = 0;
                for (const { group, repair, plan } of steps) {
                    const outcome = await doctor.fix(language(), plan, checkup.note);
                    repairs.record(group.check, repair, outcome);
                    made.value += 1;
                }
                whole.value = null;
                made.value = null;
                await checkup.runAgain(...steps.map(({ group }) => group.check));
                await repairs.readHistory();
            }),
    };
}
