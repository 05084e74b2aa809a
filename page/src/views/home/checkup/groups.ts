import type { DoctorFinding } from '@/client';

/** Findings of one check that the same repairs fit; they share a row and a repair. */
export interface FindingGroup {
    key: string;
    check: string;
    state: DoctorFinding['state'];
    findings: DoctorFinding[];
    repairs: string[];
}

const urgency: DoctorFinding['state'][] = ['bad', 'warning', 'note'];

/** The rows for findings, the worst first. */
export function grouped(findings: DoctorFinding[]): FindingGroup[] {
    const groups = new Map<string, FindingGroup>();
    for (const finding of findings) {
        const { check, state, repairs } = finding;
        const key = [check, ...repairs].join(' ');
        const group = groups.get(key) ?? { key, check, state, findings: [], repairs };
        group.findings.push(finding);
        groups.set(key, group);
    }
    return [...groups.values()].sort(
        (first, second) => urgency.indexOf(first.state) - urgency.indexOf(second.state),
    );
}

/** The subject of a check: the first word of its id. */
export const areaOf = (check: string): string => check.split('.')[0] ?? check;

const otherNames: Record<string, string> = { input: 'inputmethod', memory: 'processes' };

/** The view that tells more about a check's subject, if there is one of that name. */
export const viewOf = (check: string): string => otherNames[areaOf(check)] ?? areaOf(check);

/** Identifies a finding for the list of ignored ones: the same problem of the same files. */
export function findingId({ check, where }: DoctorFinding): string {
    const paths = where.map(({ path }) => path).filter((path) => path !== '');
    return [check, ...new Set(paths)].join(' ');
}
