import type { Judged } from '@/parts/judged';

/** The quick diagnoses, in the order in which they are made. */
export const stepNames = [
    'inputmethod',
    'associations',
    'shortcuts',
    'crash',
    'updater',
    'permissions',
    'memory',
] as const;
export type StepName = (typeof stepNames)[number];

/** The repairs that can be started from here, without another view. */
export type RepairName =
    | 'repairAssociations'
    | 'restoreSeparate'
    | 'restoreIntegrated'
    | 'keepDumps';

/** A sentence of the catalogue with its values. */
export interface Sentence {
    key: string;
    values: Record<string, string | number>;
}

/** Something that was found; its text is home.checkup.findings.<kind>. */
export interface Finding {
    step: StepName;
    kind: string;
    /** What exactly was found; part of the id by which it can be ignored. */
    detail: string;
    state: Exclude<Judged, 'good'>;
    values: Record<string, string | number>;
    /** The view that shows more and fixes it. */
    view: string;
    /** The repair that fixes it directly. */
    repair?: RepairName;
}

export interface StepResult {
    /** What a step has to say when it found nothing; under home.checkup.notes. */
    note: Sentence;
    findings: Finding[];
}

/** Identifies a finding; the same problem has the same id. */
export function findingId({ step, kind, detail }: Finding): string {
    return [step, kind, detail].join(':');
}

export function sentence(key: string, values: Sentence['values'] = {}): Sentence {
    return { key, values };
}
