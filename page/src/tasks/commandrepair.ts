import { ref, shallowRef } from 'vue';
import type {
    Client,
    CommandPreview,
    Failure,
    Outcome,
    RepairCommand,
    UndoOutcome,
    WatchedRepair,
} from '@/client';

const valueOf = <Value>(outcome: Outcome<Value>): Value | Failure =>
    outcome.kind === 'done' ? outcome.value : outcome;

/**
 * Commands that repair, with a preview, the doctor's check and undo around them where the shell
 * offers that; otherwise they run alone.
 */
export function useCommandRepair({ doctor }: Client, language: () => string) {
    const preview = shallowRef<CommandPreview | Failure | null>(null);
    const made = shallowRef<WatchedRepair | null>(null);
    const undone = shallowRef<UndoOutcome | Failure | null>(null);
    const notes = ref<string[]>([]);
    const note = (text: string): void => {
        notes.value = [...notes.value, text];
    };

    async function prepare(command: RepairCommand): Promise<void> {
        if (!doctor.watches) return;
        preview.value = null;
        preview.value = valueOf(await doctor.preview(command));
    }

    return {
        /** Whether repairs are previewed and can be undone. */
        watches: doctor.watches,
        preview,
        made,
        undone,
        notes,
        prepare,
        /** Runs `act`, which sends the command and waits until it has settled. */
        async run<Value>(
            command: RepairCommand,
            act: () => Promise<Outcome<Value>>,
        ): Promise<Outcome<Value>> {
            made.value = null;
            undone.value = null;
            notes.value = [];
            const isLasting =
                preview.value !== null &&
                'lasting' in preview.value &&
                preview.value.lasting !== '';
            if (!doctor.watches || isLasting) return act();
            const begun = await doctor.watch(command, note);
            if (begun.kind !== 'done') return begun;
            if (begun.value !== '') return { kind: 'blocked', reason: begun.value };
            const outcome = await act();
            const ended = await doctor.watched(language(), note);
            if (ended.kind !== 'done') return ended;
            made.value = ended.value;
            return outcome;
        },
        async undo(): Promise<void> {
            if (!made.value) return;
            undone.value = valueOf(await doctor.undo(made.value.journal, note));
            if ('result' in undone.value && undone.value.result === 'undone') made.value = null;
        },
    };
}
