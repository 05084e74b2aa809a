import { ref, watch, type Ref } from 'vue';
import type { Client } from '@/client';
import { categories, emptyDraft, mostAttachments, type Draft } from './draft';

/** A draft as it was kept; whatever is missing or of another kind in it is as at the start. */
export function parseDraft(kept: string): Draft {
    const empty = emptyDraft();
    let found: Partial<Record<keyof Draft, unknown>> = {};
    try {
        found = (JSON.parse(kept) as typeof found | null) ?? {};
    } catch {
        return empty;
    }
    const textOf = (value: unknown): string => (typeof value === 'string' ? value : '');
    const flagOf = (name: 'systemInformation' | 'suiteSettings' | 'crashDumps'): boolean =>
        typeof found[name] === 'boolean' ? found[name] : empty[name];
    const attachments: unknown[] = Array.isArray(found.attachments) ? found.attachments : [];
    return {
        category: categories.find((name) => name === found.category) ?? empty.category,
        description: textOf(found.description),
        sample: textOf(found.sample),
        attachments: attachments.map(textOf).filter(Boolean).slice(0, mostAttachments),
        systemInformation: flagOf('systemInformation'),
        suiteSettings: flagOf('suiteSettings'),
        crashDumps: flagOf('crashDumps'),
    };
}

/** Whether there is anything in a draft that took the user some work. */
const isWorth = ({ description, sample, attachments }: Draft): boolean =>
    description.trim() !== '' || sample !== '' || attachments.length > 0;

/**
 * Keeps each change of a draft until it is sent or discarded. `restored` says that it is from
 * earlier, `kept` is false when it cannot be kept.
 */
export function useKeptDraft(client: Pick<Client, 'draft'>, draft: Ref<Draft>) {
    const restored = ref(false);
    const kept = ref(true);
    let sent = false;

    async function keep(): Promise<void> {
        const text = !sent && isWorth(draft.value) ? JSON.stringify(draft.value) : '';
        kept.value = await client.draft.keep(text);
    }

    function changed(): void {
        sent = false;
        void keep();
    }

    /** Begins with `fresh`, and with what was kept for what it leaves open. */
    async function start(fresh: Draft): Promise<void> {
        const earlier = parseDraft(await client.draft.read());
        const typed = draft.value.description;
        watch(draft, changed, { deep: true });
        restored.value = isWorth(earlier);
        if (restored.value && (fresh.sample || fresh.category !== emptyDraft().category)) {
            const { description, attachments } = earlier;
            const others = attachments.filter((path) => path !== fresh.sample);
            draft.value = { ...fresh, description, attachments: others };
        } else {
            draft.value = restored.value ? earlier : fresh;
        }
        if (typed) draft.value = { ...draft.value, description: typed };
    }

    function finish(): void {
        sent = true;
        restored.value = false;
        void keep();
    }

    function discard(): void {
        restored.value = false;
        draft.value = emptyDraft();
    }

    return { restored, kept, start, finish, discard };
}
