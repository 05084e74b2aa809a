// Figures of assistantctl, against a bare Qt program.

import { compare, figure } from './measure.mjs';
import { peakMemoryOf, secondsOf } from './processes.mjs';

/** @param {{assistantctl: string, bareApplication: string}} programs */
export async function commandLineFigures({ assistantctl, bareApplication }) {
    const ours = [assistantctl, ['getcollectionpage']];
    const peer = [bareApplication, ['-platform', 'offscreen']];
    return [
        figure('start of assistantctl', 's',
            await compare(31, () => secondsOf(...ours), () => secondsOf(...peer)), 2.0),
        figure('memory of assistantctl', 'MiB',
            await compare(5, () => peakMemoryOf(...ours), () => peakMemoryOf(...peer)), null),
    ];
}
