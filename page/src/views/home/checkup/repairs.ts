import { ref, shallowReactive, shallowRef } from 'vue';
import type {
    Client,
    Failure,
    HistoryEntry,
    KeptLook,
    Outcome,
    RepairOutcome,
    RepairPlan,
    UndoOutcome,
} from '@/client';
import { valueOf } from '@/tasks/undoing';
import type { Checkup } from './checkup';
import type { FindingGroup } from './groups';

/** A plan that is shown, for the group of that key. */
export interface ShownPlan {
    key: string;
    check: string;
    repair: string;
    plan: RepairPlan | Failure;
}

/** What came of a repair. */
interface Repairing {
    repair: string;
    outcome: RepairOutcome | Failure;
}

/** What came of taking a repair back. */
export interface Undoing {
    entry: Pick<HistoryEntry, 'journal' | 'check' | 'repair'>;
    outcome: UndoOutcome | Failure;
}

/** Repairs of what the check-up found, one at a time: planned, made, taken back. */
export function useRepairs({ doctor }: Client, language: () => string, checkup: Checkup) {
    const shown = shallowRef<ShownPlan | null>(null);
    const working = ref(false);
    /** The last repair of each check. */
    const outcomes = shallowReactive(new Map<string, Repairing>());
    const undoing = shallowRef<Undoing | null>(null);
    const entries = shallowRef<HistoryEntry[]>([]);
    const looks = shallowRef<KeptLook[]>([]);
    const historyFailure = shallowRef<Failure | null>(null);

    /** Nothing else may start meanwhile. */
    async function alone(work: () => Promise<void>): Promise<void> {
        if (working.value || checkup.running.value) return;
        working.value = true;
        await work();
        working.value = false;
    }

    async function readHistory(): Promise<void> {
        const outcome = await doctor.history(checkup.note);
        historyFailure.value = outcome.kind === 'done' ? null : outcome;
        if (outcome.kind === 'done') entries.value = [...outcome.value].reverse();
        if (!doctor.keepsLooks) return;
        const kept = await doctor.keptLooks();
        if (kept.kind === 'done') looks.value = [...kept.value].reverse();
        else historyFailure.value = kept;
    }

    return {
        alone,
        shown,
        working,
        outcomes,
        undoing,
        entries,
        looks,
        historyFailure,
        readHistory,
        /** Notes what came of a repair that was made with others. */
        record(check: string, repair: string, outcome: Outcome<RepairOutcome>): void {
            outcomes.set(check, { repair, outcome: valueOf(outcome) });
            undoing.value = null;
        },
        /** Shows what a repair would change. */
        prepare: ({ key, check, findings }: FindingGroup, repair: string) =>
            alone(async () => {
                outcomes.delete(check);
                const numbers = findings.map((finding) => finding.number);
                const plan = valueOf(await doctor.plan(numbers, repair));
                shown.value = { key, check, repair, plan };
            }),
        leave(): void {
            shown.value = null;
        },
        /** Does what is shown. */
        fix: () =>
            alone(async () => {
                const current = shown.value;
                if (!current || !('number' in current.plan)) return;
                const outcome = await doctor.fix(language(), current.plan.number, checkup.note);
                shown.value = null;
                const { check, repair } = current;
                outcomes.set(check, { repair, outcome: valueOf(outcome) });
                undoing.value = null;
                await checkup.runAgain(current.check);
                await readHistory();
            }),
        undo: (entry: Undoing['entry']) =>
            alone(async () => {
                shown.value = null;
                const outcome = await doctor.undo(entry.journal, checkup.note);
                outcomes.delete(entry.check);
                undoing.value = { entry, outcome: valueOf(outcome) };
                await checkup.runAgain(entry.check);
                await readHistory();
            }),
        /** Before a new look. */
        forget(): void {
            shown.value = null;
            undoing.value = null;
            outcomes.clear();
        },
    };
}

export type Repairs = ReturnType<typeof useRepairs>;
