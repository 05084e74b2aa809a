import { computed, ref, shallowReactive, shallowRef, watch } from 'vue';
import type {
    CheckResult,
    Client,
    DoctorFinding,
    Failure,
    ListedCheck,
    LookChange,
} from '@/client';
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
    /** What is different from the whole look before. */
    const change = shallowRef<LookChange | null>(null);
    const ignored = shallowRef(readIgnored());

    watch(ignored, writeIgnored);

    const groupsOf = (wanted: (finding: DoctorFinding) => boolean): FindingGroup[] =>
        grouped(checks.value.flatMap(({ check }) => found.get(check) ?? []).filter(wanted));
    const isIgnored = (finding: DoctorFinding): boolean =>
        ignored.value.includes(findingId(finding));

    function note(text: string): void {
        if (!notes.value.includes(text)) notes.value = [...notes.value, text];
    }

    const listener = {
        check: (result: CheckResult): void => {
            results.set(result.check, result);
            found.set(result.check, []);
        },
        finding: (finding: DoctorFinding): void => {
            found.set(finding.check, [...(found.get(finding.check) ?? []), finding]);
        },
        note,
    };

    async function look(ids: string[]): Promise<void> {
        const outcome = await doctor.look(language(), ids, listener);
        failure.value = outcome.kind === 'done' ? null : outcome;
        // It was about what the whole look has found.
        change.value = null;
    }

    async function lookAtAll(): Promise<void> {
        const outcome = await doctor.lookAtAll(language(), listener);
        failure.value = outcome.kind === 'done' ? null : outcome;
        change.value = outcome.kind === 'done' ? outcome.value : null;
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
        change.value = null;
        results.clear();
        found.clear();
        if (await readList()) await lookAtAll();
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
        change,
        groups: computed(() => groupsOf((finding) => !isIgnored(finding))),
        ignoredGroups: computed(() => groupsOf(isIgnored)),
        readList,
        run,
        /** Runs whole subjects of views or checks again: one repair may have served several. */
        async runAgain(...subjects: string[]): Promise<void> {
            const views = subjects.map(viewOf);
            const ids = checks.value
                .map((listed) => listed.check)
                .filter((id) => views.includes(viewOf(id)));
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
