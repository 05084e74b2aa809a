import type { CheckFinding } from '@/client';
import type { Judged } from '@/parts/judged';
import { findingLines } from './checks';

/** A line of an answer; the project's own check tool begins each with a mark. */
interface AnswerLine {
    state: Judged;
    text: string;
    /** What the line says to run. */
    commands: string[];
}

/** After so many milliseconds an answer may not hold any more. */
export const longestFresh = 30 * 60 * 1000;

const marks: Record<string, Judged> = { '✘': 'bad', '⚠': 'warning', '✔': 'good' };
const programs = 'sudo|im-config|lpoptions|cupsenable|cupsaccept';
const quoted = new RegExp(`“((?:${programs})(?: [^”]+)?)”`, 'g');

export function answerLines(finding: CheckFinding): AnswerLine[] {
    return findingLines(finding).map((text) => ({
        state: marks[text.charAt(0)] ?? 'plain',
        text,
        commands: [...text.matchAll(quoted)].map(([, command = '']) => command),
    }));
}

const urgency: Judged[] = ['bad', 'warning', 'plain', 'good'];

/** The worst of an answer's lines; nothing is known without any. */
export function stateOf(finding: CheckFinding): Judged {
    const states = answerLines(finding).map(({ state }) => state);
    return urgency.find((state) => states.includes(state)) ?? 'plain';
}

/** The worst first. */
export function sorted(findings: CheckFinding[]): CheckFinding[] {
    const rank = (finding: CheckFinding): number => urgency.indexOf(stateOf(finding));
    return [...findings].sort((first, second) => rank(first) - rank(second));
}
