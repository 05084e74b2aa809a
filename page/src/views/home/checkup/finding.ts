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

/** What can be mended from here, without another view. */
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
    /** What exactly was found; the same again has the same, and can be ignored by it. */
    detail: string;
    state: Exclude<Judged, 'good'>;
    values: Record<string, string | number>;
    /** The view that tells more and mends it. */
    view: string;
    /** What mends it at once. */
    repair?: RepairName;
}

export interface StepResult {
    /** What a step has to say when it found nothing; under home.checkup.notes. */
    note: Sentence;
    findings: Finding[];
}

/** Names a finding for as long as the same is found. */
export function findingId({ step, kind, detail }: Finding): string {
    return [step, kind, detail].join(':');
}

export function sentence(key: string, values: Sentence['values'] = {}): Sentence {
    return { key, values };
}
