// How every figure is measured: in alternating rounds, as the median.

export function median(values) {
    const sorted = [...values].sort((a, b) => a - b);
    const middle = Math.floor(sorted.length / 2);
    return sorted.length % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

/**
 * Measures two things in turn and gives the ratio of their medians.
 * @param {number} rounds how often each is measured, after one round that does not count
 */
export async function compare(rounds, measureOurs, measurePeer) {
    const ours = [];
    const peer = [];
    for (let round = 0; round <= rounds; round++) {
        const oursValue = await measureOurs();
        const peerValue = await measurePeer();
        if (round > 0) {
            ours.push(oursValue);
            peer.push(peerValue);
        }
    }
    return { ours: median(ours), peer: median(peer), ratio: median(ours) / median(peer) };
}

/**
 * Of an odd number of comparisons the one with the median ratio.
 * @param {{ours: number, peer: number, ratio: number}[]} comparisons
 */
export function middleOf(comparisons) {
    const sorted = [...comparisons].sort((a, b) => a.ratio - b.ratio);
    return sorted[Math.floor(sorted.length / 2)];
}

/**
 * One line of the results.
 * @param {{ours: number, peer: number, ratio: number}} comparison
 * @param {number | null} goal the ratio that is good enough, if there is one
 */
export function figure(name, unit, comparison, goal) {
    return { name, unit, goal, ...comparison };
}

/** One line of the results for a figure with a fixed limit instead of a peer. */
export function bounded(name, unit, ours, limit) {
    return figure(name, unit, { ours, peer: limit, ratio: ours / limit }, 1);
}
