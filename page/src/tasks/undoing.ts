import { ref, shallowRef } from 'vue';
import type {
    Client,
    Failure,
    Outcome,
    PlannedChange,
    RepairOutcome,
    RepairPlan,
    UndoOutcome,
} from '@/client';

/** A repair with what it has changed. */
interface MadeRepair extends RepairOutcome {
    changes: PlannedChange[];
}

export const valueOf = <Value>(outcome: Outcome<Value>): Value | Failure =>
    outcome.kind === 'done' ? outcome.value : outcome;

/** The last repair of a view, which can be taken back. */
export function useUndoing({ doctor }: Client) {
    const made = shallowRef<MadeRepair | null>(null);
    const undone = shallowRef<UndoOutcome | Failure | null>(null);
    const notes = ref<string[]>([]);
    const note = (text: string): void => {
        notes.value = [...notes.value, text];
    };
    function forget(): void {
        made.value = null;
        undone.value = null;
        notes.value = [];
    }
    return {
        made,
        undone,
        notes,
        note,
        forget,
        async undo(): Promise<void> {
            if (!made.value) return;
            undone.value = valueOf(await doctor.undo(made.value.journal, note));
            if ('result' in undone.value && undone.value.result === 'undone') made.value = null;
        },
    };
}

export type Undoing = ReturnType<typeof useUndoing>;

/** Does what a plan has shown; gives the reason of an outcome, also of a good one. */
export async function makePlanned(
    { doctor }: Client,
    undoing: Undoing,
    language: string,
    plan: RepairPlan,
): Promise<Outcome<string>> {
    undoing.forget();
    const outcome = await doctor.fix(language, plan.number, undoing.note);
    if (outcome.kind !== 'done') return outcome;
    const { result, reason } = outcome.value;
    if (result !== 'repaired') return { kind: 'blocked', reason };
    undoing.made.value = { ...outcome.value, changes: plan.changes };
    return { kind: 'done', value: reason };
}
