// Figures of the library's commands, against the bare pipelines and tools behind them.

import { waitFor } from 'browser-driver';
import { chmodSync, existsSync, mkdirSync, rmSync, writeFileSync } from 'node:fs';
import { randomFillSync } from 'node:crypto';
import { enduranceFigures } from './endurance.mjs';
import { listingFigures } from './listings.mjs';
import { compare, figure } from './measure.mjs';
import { scripts, Workplace } from './workplace.mjs';

const reportTools = [
    'uname -srm',
    `bash ${scripts}getbrowserinfo.sh`,
    'cat /proc/cpuinfo | grep name | cut -f2 -d:',
    'fc-list -f "%-40{family[0]}%{style} \n"',
    'id -un',
    'env',
];

async function reportFigure(place) {
    const ours = () =>
        place.withSession(async (session) => {
            await session.secondsOf('getcollectionpage');
            return session.secondsOf('exportsysinfo', {}, [`${place.home}/report.txt`]);
        });
    const peer = async () => {
        let seconds = 0;
        for (const tool of reportTools) seconds += await place.shell(tool);
        return seconds;
    };
    return figure('report export against its six tools', 's', await compare(9, ours, peer), 1.1);
}

/** A viewer that only writes a marker file: the archive script opens it last. */
function markingViewer(place) {
    const directory = `${place.directory}/fakes`;
    mkdirSync(directory, { recursive: true });
    writeFileSync(`${directory}/xdg-open`, `#!/bin/sh\n: > ${place.directory}/opened\n`);
    chmodSync(`${directory}/xdg-open`, 0o755);
    return { ...place.env, PATH: `${directory}:${process.env.PATH}` };
}

async function archiveFigure(place) {
    const directory = `${place.home}/bare`;
    mkdirSync(directory);
    const sample = `${directory}/sample.bin`;
    const noise = Buffer.alloc(1 << 20);
    for (let piece = 0; piece < 200; piece++) {
        writeFileSync(sample, randomFillSync(noise), { flag: 'a' });
    }
    const env = markingViewer(place);
    const mark = `${place.directory}/opened`;
    const ours = () =>
        place.withSession(async (session) => {
            rmSync(mark, { force: true });
            await session.secondsOf('getcollectionpage');
            const begin = process.hrtime.bigint();
            await session.secondsOf('archivepackage', { archiveSample: sample }, [
                `${place.home}/feedback`,
            ]);
            await waitFor(() => existsSync(mark), { what: 'the end of the archive', everyMs: 5 });
            return Number(process.hrtime.bigint() - begin) / 1e9;
        }, env);
    const peer = () =>
        place.shell(`tar -cf - ${directory} 2> /dev/null | gzip > ${place.home}/bare.tar.gz`);
    return figure(
        'feedback archive of 200 MB against tar and gzip',
        's',
        await compare(5, ours, peer),
        1.05,
    );
}

/** @param {{suite: string}} programs */
export async function commandFigures({ suite }) {
    const place = new Workplace(suite);
    try {
        return [
            ...(await listingFigures(place)),
            await reportFigure(place),
            await archiveFigure(place),
            ...(await enduranceFigures(place)),
        ];
    } finally {
        place.remove();
    }
}
