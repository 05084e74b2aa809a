import { shallowReactive } from 'vue';
import type { AccessReason, Client, FilePermissions, Outcome, RepairPlan } from '@/client';
import { makePlanned, type Undoing } from '@/tasks/undoing';
import { keyOf, pathOf } from './judge';

/**
 * Whether the user gets at the listed paths, as the kernel decides it, where the shell explains
 * that; fixes can be undone.
 */
export function useAccesses(client: Client, language: () => string, undoing: Undoing) {
    const { why } = client;
    /** By keyOf() of each. */
    const reasons = shallowReactive(new Map<string, AccessReason>());

    /** What is denied first, or that everything is granted; nothing if nobody knows. */
    async function reasonOf(path: string): Promise<AccessReason | undefined> {
        for (const access of ['read', 'write'] as const) {
            const outcome = await why.access(language(), path, access);
            if (outcome.kind !== 'done') return undefined;
            if (access === 'write' || outcome.value.verdict !== 'granted') return outcome.value;
        }
        return undefined;
    }

    return {
        reasons,
        async look(files: FilePermissions[]): Promise<void> {
            if (!why.isOffered) return;
            for (const file of files) {
                const path = file.exists ? pathOf(file) : null;
                const reason = path === null ? undefined : await reasonOf(path);
                if (reason) reasons.set(keyOf(file), reason);
                else reasons.delete(keyOf(file));
            }
        },
        fix: (plan: RepairPlan): Promise<Outcome<string>> =>
            makePlanned(client, undoing, language(), plan),
    };
}
