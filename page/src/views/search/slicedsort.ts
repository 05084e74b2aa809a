/** A sort that can be interrupted: each step is short, and the last one answers the result. */
export type SlicedSort = Generator<undefined, number[], undefined>;

export type Compare = (first: number, second: number) => number;

/** Sorted at once; small enough to take about a millisecond. */
const runLength = 256;
/** Comparisons between two steps of a merge. */
const stepLength = 512;

function* merge(first: number[], second: number[], compare: Compare): SlicedSort {
    const merged: number[] = [];
    let left = 0;
    let right = 0;
    while (left < first.length && right < second.length) {
        merged.push(compare(first[left]!, second[right]!) <= 0 ? first[left++]! : second[right++]!);
        if (merged.length % stepLength === 0) yield;
    }
    while (left < first.length) merged.push(first[left++]!);
    while (right < second.length) merged.push(second[right++]!);
    return merged;
}

/** Sorts `added` and merges it into the sorted `sorted`; keeps equal ones in order. */
export function* sortInto(sorted: number[], added: number[], compare: Compare): SlicedSort {
    let runs: number[][] = [];
    for (let start = 0; start < added.length; start += runLength) {
        runs.push(added.slice(start, start + runLength).sort(compare));
        yield;
    }
    while (runs.length > 1) {
        const merged: number[][] = [];
        for (let index = 0; index < runs.length; index += 2) {
            const next = runs[index + 1];
            merged.push(next ? yield* merge(runs[index]!, next, compare) : runs[index]!);
        }
        runs = merged;
    }
    const [run = []] = runs;
    return sorted.length ? yield* merge(sorted, run, compare) : run;
}
