import type { Outcome, ReportEnd } from '@/client';
import { failureText, type Translate } from '../frame/texts';

/** How an export of the system report ended, in a sentence. */
export function exportResultText(t: Translate, outcome: Outcome<ReportEnd>): string {
    if (outcome.kind === 'done') return t(`export.${outcome.value}`);
    return failureText(t, outcome, {
        failed: 'export.cancelled',
        unanswered: 'export.notOpened',
        broken: 'export.notSaved',
    });
}
