// Figures of assistantctl, against a bare Qt program.

import { compare, figure } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';
import { peakMemoryOf, secondsOf } from './processes.mjs';

/** @param {{assistantctl: string, bareApplication: string}} programs */
export function commandLineFigures(programs) {
    return withPrivateHome((env) => figuresIn(env, programs));
}

async function figuresIn(env, { assistantctl, bareApplication }) {
    const ours = [assistantctl, ['getcollectionpage'], { env }];
    const peer = [bareApplication, ['-platform', 'offscreen'], { env }];
    return [
        figure(
            'start of assistantctl',
            's',
            await compare(
                31,
                () => secondsOf(...ours),
                () => secondsOf(...peer),
            ),
            1.2,
        ),
        figure(
            'memory of assistantctl',
            'MiB',
            await compare(
                5,
                () => peakMemoryOf(...ours),
                () => peakMemoryOf(...peer),
            ),
            null,
        ),
    ];
}
