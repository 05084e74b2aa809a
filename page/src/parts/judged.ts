import type { DoctorFinding } from '@/client';

/** A verdict: fine, for information, worth a look, or broken. */
export type Judged = 'good' | 'plain' | 'warning' | 'bad';

export function judged(state: DoctorFinding['state']): Judged {
    return state === 'note' ? 'plain' : state;
}
