import { ref, shallowRef } from 'vue';
import type { Client, Failure, OpenReason, Outcome, RepairPlan, SuffixOpening } from '@/client';
import { makePlanned, valueOf, type Undoing } from '@/tasks/undoing';

/** What the doctor has to say of a row that is open; null while it looks. */
interface ShownReason {
    extension: string;
    reason: OpenReason | Failure | null;
}

const suffixOf = (extension: string): string => extension.replace(/^\./, '');

/** Why each document type opens as it does, where the shell explains that; fixes can be undone. */
export function useReasons(client: Client, language: () => string, undoing: Undoing) {
    const { why } = client;
    const openings = shallowRef<SuffixOpening[]>([]);
    const shown = ref<ShownReason | null>(null);

    async function look(): Promise<void> {
        if (!why.isOffered) return;
        const outcome = await why.openings();
        openings.value = outcome.kind === 'done' ? outcome.value : [];
        const extension = shown.value?.extension;
        if (extension === undefined) return;
        const reason = valueOf(await why.opening(language(), suffixOf(extension)));
        if (shown.value?.extension === extension) shown.value = { extension, reason };
    }

    return {
        explains: why.isOffered,
        shown,
        look,
        /** What opens it, or undefined where that is not known. */
        openingOf: (extension: string): SuffixOpening | undefined =>
            openings.value.find(({ suffix }) => suffix === suffixOf(extension)),
        /** Shows why, or hides it. */
        async toggle(extension: string): Promise<void> {
            const isShown = shown.value?.extension === extension;
            shown.value = isShown ? null : { extension, reason: null };
            if (!isShown) await look();
        },
        fix: (plan: RepairPlan): Promise<Outcome<string>> =>
            makePlanned(client, undoing, language(), plan),
    };
}

export type Reasons = ReturnType<typeof useReasons>;
