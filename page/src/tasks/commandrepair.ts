import { shallowRef } from 'vue';
import type { Client, CommandPreview, Failure, Outcome, RepairCommand } from '@/client';
import { useUndoing, valueOf } from './undoing';

/**
 * Commands that repair, with a preview, the doctor's check and undo around them where the shell
 * offers that; otherwise they run alone.
 */
export function useCommandRepair(client: Client, language: () => string) {
    const { doctor } = client;
    const undoing = useUndoing(client);
    const { made, note } = undoing;
    const preview = shallowRef<CommandPreview | Failure | null>(null);

    async function prepare(command: RepairCommand): Promise<void> {
        if (!doctor.watches) return;
        preview.value = null;
        preview.value = valueOf(await doctor.preview(command));
    }

    return {
        ...undoing,
        /** Whether repairs are previewed and can be undone. */
        watches: doctor.watches,
        preview,
        prepare,
        /** Runs `act`, which sends the command and waits until it has settled. */
        async run<Value>(
            command: RepairCommand,
            act: () => Promise<Outcome<Value>>,
        ): Promise<Outcome<Value>> {
            undoing.forget();
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
    };
}
