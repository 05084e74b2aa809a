import { computed, ref, shallowReactive, shallowRef, watch } from 'vue';
import type { CheckResult, Client, DoctorFinding, Failure, ListedCheck } from '@/client';
import { viewOf, findingId, grouped, type FindingGroup } from './groups';
import { readIgnored, withIgnored, withoutIgnored, writeIgnored } from './ignored';

/** A look at the machine by the doctor: its checks, and what they found. */
export function useCheckup({ doctor }: Client, language: () => string) {
    const checks = shallowRef<ListedCheck[]>([]);
    const mistakes = shallowRef<string[]>([]);
    const results = shallowReactive(new Map<string, CheckResult>());
    const found = shallowReactive(new Map<string, DoctorFinding[]>());
    const notes = shallowRef<string[]>([]);
    const running = ref(false);
    const stopped = ref(false);
    const finishedAt = shallowRef<Date | null>(null);
    const failure = shallowRef<Failure | null>(null);
    const ignored = shallowRef(readIgnored());

    watch(ignored, writeIgnored);

    const groupsOf = (wanted: (finding: DoctorFinding) => boolean): FindingGroup[] =>
        grouped(checks.value.flatMap(({ check }) => found.get(check) ?? []).filter(wanted));
    const isIgnored = (finding: DoctorFinding): boolean =>
        ignored.value.includes(findingId(finding));

    function note(text: string): void {
        if (!notes.value.includes(text)) notes.value = [...notes.value, text];
    }

    async function look(ids: string[]): Promise<void> {
        const outcome = await doctor.look(language(), ids, {
            check: (result) => {
                results.set(result.check, result);
                found.set(result.check, []);
            },
            finding: (finding) => {
                found.set(finding.check, [...(found.get(finding.check) ?? []), finding]);
            },
            note,
        });
        failure.value = outcome.kind === 'done' ? null : outcome;
    }

    async function readList(): Promise<boolean> {
        const outcome = await doctor.list(language());
        failure.value = outcome.kind === 'done' ? null : outcome;
        if (outcome.kind !== 'done') return false;
        ({ checks: checks.value, mistakes: mistakes.value } = outcome.value);
        return true;
    }

    async function run(): Promise<void> {
        if (running.value) return;
        running.value = true;
        stopped.value = false;
        notes.value = [];
        results.clear();
        found.clear();
        if (await readList()) await look([]);
        running.value = false;
        finishedAt.value = new Date();
    }

    return {
        checks,
        mistakes,
        results,
        notes,
        note,
        running,
        stopped,
        finishedAt,
        failure,
        groups: computed(() => groupsOf((finding) => !isIgnored(finding))),
        ignoredGroups: computed(() => groupsOf(isIgnored)),
        readList,
        run,
        /** Runs a view's or a check's whole subject again: one repair may have served several. */
        async runAgain(subject: string): Promise<void> {
            const ids = checks.value
                .map((listed) => listed.check)
                .filter((id) => viewOf(id) === viewOf(subject));
            if (finishedAt.value && !running.value && ids.length) await look(ids);
        },
        async stop(): Promise<void> {
            stopped.value = true;
            await doctor.cancel();
        },
        ignore({ findings }: FindingGroup): void {
            ignored.value = findings.map(findingId).reduce(withIgnored, ignored.value);
        },
        noticeAgain({ findings }: FindingGroup): void {
            ignored.value = findings.map(findingId).reduce(withoutIgnored, ignored.value);
        },
    };
}

export type Checkup = ReturnType<typeof useCheckup>;
