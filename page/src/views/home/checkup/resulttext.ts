import type { CheckResult } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';
import type { FindingGroup } from './groups';

interface Result {
    sentence: string;
    remarks: string[];
    groups: FindingGroup[];
    failed: CheckResult[];
    areaOf: (check: string) => string;
    titleOf: (check: string) => string;
}

/** A check-up's result to paste, save or send. */
export function resultText(result: Result, t: Translate): string {
    const { sentence, remarks, groups, failed, areaOf, titleOf } = result;
    const found = groups.flatMap(({ check, findings }) => [
        '',
        `== ${areaOf(check)} (${check}) ==`,
        ...findings.map(({ text }) => visibleText(text)),
    ]);
    const unchecked = failed.flatMap(({ check, reason }) => [
        '',
        `== ${titleOf(check)} (${check}) ==`,
        t('home.checkup.notChecked', { reason: visibleText(reason) }),
    ]);
    return [sentence, ...remarks, ...found, ...unchecked, ''].join('\n');
}
