/** Reports of machines, which a shell may compare. */
import type { Caller } from './wire/caller';
import { list, members, number, optional, text, textList, word } from './wire/decode';

const weights = ['high', 'medium', 'low'] as const;

interface ComparedReport {
    host: string;
    user: string;
    made: Date;
}

export interface Difference {
    group: string;
    /** What differs in the same way. */
    names: string[];
    weight: (typeof weights)[number];
    /** Why it may matter. */
    reason: string;
    /** One for each report; null where it does not have it. */
    values: (string | null)[];
    /** From three reports on: indices of those that differ from most. */
    deviating: number[];
}

interface Comparison {
    /** Why a report cannot be read, one for each that was sent; empty for those that can. */
    problems: string[];
    /** Empty if one cannot be read. */
    reports: ComparedReport[];
    /** The ones that can matter most first. */
    differences: Difference[];
    /** Index of the report that differs from the others; null if none does. */
    outlier: number | null;
}

function comparedReport(line: Record<string, unknown>): ComparedReport {
    return { host: text(line.host), user: text(line.user), made: new Date(text(line.made)) };
}

function difference(line: Record<string, unknown>): Difference {
    return {
        group: text(line.group),
        names: textList(line.names),
        weight: word(line.weight, weights),
        reason: text(line.reason),
        values: list(line.values).map((value) => optional(value, text, null)),
        deviating: list(line.deviating).map(number),
    };
}

function comparison(result: unknown): Comparison {
    const answer = members(result);
    const lines = list(answer.lines).map(members);
    const ofType = (type: string) => lines.filter((line) => line.type === type);
    return {
        problems: textList(answer.problems),
        reports: ofType('compares').map(comparedReport),
        differences: ofType('difference').map(difference),
        outlier: optional(ofType('compared')[0]?.outlier, number, null),
    };
}

export function reportOperations(caller: Caller) {
    return {
        /** Whether this shell compares reports. */
        get isOffered(): boolean {
            return caller.offers('task.compare');
        },
        /** What differs between reports, and from this machine if `here`; it is the first then. */
        compare: (reports: string[], here: boolean) =>
            caller.perform('task.compare', comparison, { reports, here }),
    };
}
