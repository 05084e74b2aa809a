// What loading the plug-in costs beside an empty one with the same libraries behind it.

import { execFileSync } from 'node:child_process';
import { compare, figure } from './measure.mjs';

const rounds = 7;

/** @param {{loadPlugin: string, plugin: string, emptyPlugin: string}} programs */
export async function loadingFigures({ loadPlugin, plugin, emptyPlugin }) {
    const loadTime = (library) => Number(execFileSync(loadPlugin, [library], { encoding: 'utf8' }));
    return [
        figure(
            'loading the plug-in, against an empty one',
            'µs',
            await compare(
                rounds,
                () => loadTime(plugin),
                () => loadTime(emptyPlugin),
            ),
            null,
        ),
    ];
}
