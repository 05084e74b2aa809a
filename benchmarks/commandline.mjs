// Figures of assistantctl, against a bare Qt program.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { compare, figure } from './measure.mjs';
import { secondsOf } from './processes.mjs';

const timeCommand = '/usr/bin/time';

/** The largest resident memory of a finished program, in MiB. */
async function peakMemoryOf(program, args) {
    const child = spawn(timeCommand, ['-f', '%M', program, ...args], { stdio: ['ignore', 'ignore', 'pipe'] });
    let output = '';
    child.stderr.on('data', (data) => (output += data));
    await once(child, 'close');
    return Number(output.trim().split('\n').pop()) / 1024;
}

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
