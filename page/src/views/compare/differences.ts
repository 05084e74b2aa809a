import type { Difference } from '@/client';

/** A value of a difference, with the reports that have it. */
export interface SharedValue {
    /** Null where they do not have it. */
    value: string | null;
    /** Indices of reports. */
    reports: number[];
}

/** The values of a difference in the order of the reports, each once. */
export function sharedValues({ values }: Difference): SharedValue[] {
    const shared: SharedValue[] = [];
    values.forEach((value, index) => {
        const same = shared.find((one) => one.value === value);
        if (same) same.reports.push(index);
        else shared.push({ value, reports: [index] });
    });
    return shared;
}

/** The differences that can matter, and those that seldom do. */
export function byWeight(differences: Difference[]): {
    worthALook: Difference[];
    seldom: Difference[];
} {
    return {
        worthALook: differences.filter(({ weight }) => weight !== 'low'),
        seldom: differences.filter(({ weight }) => weight === 'low'),
    };
}
