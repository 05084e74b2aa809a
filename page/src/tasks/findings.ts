import { shallowRef } from 'vue';
import type { CheckResult, Client, DoctorFinding } from '@/client';

/** What some of the doctor's checks have found. */
export interface Found {
    findings: DoctorFinding[];
    /** None of them applies, as for the administrator. */
    skipped: boolean;
}

/**
 * The doctor's verdict for the marks of a view; null where the shell has no doctor or a check
 * failed. `note` receives what the doctor has to say besides.
 */
export function useFindings(
    { doctor }: Client,
    language: () => string,
    checks: string[],
    note: (text: string) => void,
) {
    const found = shallowRef<Found | null>(null);
    return {
        found,
        async look(): Promise<void> {
            if (!doctor.isOffered) return;
            const findings: DoctorFinding[] = [];
            const results: CheckResult['result'][] = [];
            const outcome = await doctor.look(language(), checks, {
                check: ({ result }) => results.push(result),
                finding: (finding) => findings.push(finding),
                note,
            });
            const isWhole =
                outcome.kind === 'done' &&
                results.length === checks.length &&
                !results.includes('failed');
            const skipped = results.every((result) => result === 'skipped');
            found.value = isWhole ? { findings, skipped } : null;
        },
    };
}
