import type { CheckFinding } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';

/** The suite's components, as the check tool names them. */
export const components = ['vyr', 'tbl', 'shw'] as const;
export type Component = (typeof components)[number];

/** The checks that the check tool knows. */
export const checks = [
    'libraries',
    'fonts',
    'locale',
    'space',
    'configuration',
    'printing',
    'display',
    'dbus',
    'input',
    'plugins',
] as const;
export type Check = (typeof checks)[number];

/** The choice of a check that this list does not have. */
export const otherCheck = 'other';
export type CheckChoice = Check | typeof otherCheck;

/** A check as it goes to the tool. */
export interface CheckRequest {
    check: string;
    component: string;
    argument: string;
}

/** The request for what is chosen; null while a check of one's own has no name. */
export function requestOf(
    choice: CheckChoice,
    component: Component,
    ownCheck: string,
    argument: string,
): CheckRequest | null {
    const check = choice === otherCheck ? ownCheck.trim() : choice;
    return check === '' ? null : { check, component, argument: argument.trim() };
}

/** Whether a finding answers the request: a window may get the answer of an earlier one. */
export function answers({ check, component }: CheckFinding, request: CheckRequest): boolean {
    return check === request.check && component === request.component;
}

export function checkName(check: string, t: Translate): string {
    return checks.some((known) => known === check)
        ? t(`environmentcheck.checks.${check}.name`)
        : visibleText(check);
}

export function componentName(component: string, t: Translate): string {
    return components.some((known) => known === component)
        ? t(`environmentcheck.components.${component}`)
        : visibleText(component);
}

/** The findings with `added` first, replacing an earlier one of the same check and component. */
export function withFinding(findings: CheckFinding[], added: CheckFinding): CheckFinding[] {
    return [
        added,
        ...findings.filter(
            (finding) => finding.check !== added.check || finding.component !== added.component,
        ),
    ];
}

/** The lines of a finding; none when the tool gave no answer. */
export function findingLines({ value }: CheckFinding): string[] {
    const lines = value.split(/\r?\n/);
    while (lines.length && lines[lines.length - 1]!.trim() === '') lines.pop();
    return lines;
}

/** All findings as text to paste. */
export function findingsText(findings: CheckFinding[], t: Translate): string {
    return findings
        .map((finding) => {
            const title = `${componentName(finding.component, t)} – ${checkName(finding.check, t)}`;
            const lines = findingLines(finding).map(visibleText);
            return [
                `== ${title} ==`,
                ...(lines.length ? lines : [t('environmentcheck.noAnswer')]),
            ].join('\n');
        })
        .join('\n\n');
}
