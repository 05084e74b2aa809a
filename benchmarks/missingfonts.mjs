// Figures of finding the fonts of a big document, against only unpacking its XML.

import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { fileURLToPath } from 'node:url';
import { compare, figure, median } from './measure.mjs';
import { peakMemoryOf, secondsOf } from './processes.mjs';

const memoryLimit = 64; // MiB
const generator = fileURLToPath(new URL('bigdocument.py', import.meta.url));

/** @param {{vyr: string}} programs */
export async function missingFontsFigures({ vyr }) {
    const directory = mkdtempSync(`${tmpdir()}/missingfonts-`);
    try {
        const document = `${directory}/big.docx`;
        await secondsOf('python3', [generator, document]);
        const ours = [
            vyr,
            ['-savemissfont', document],
            { env: { ...process.env, HELIO_SUITE_HOME: directory } },
        ];
        const peer = ['unzip', ['-p', document, '*.xml']];
        const time = await compare(
            9,
            () => secondsOf(...ours),
            () => secondsOf(...peer),
        );
        const peaks = [];
        for (let round = 0; round < 3; round++) peaks.push(await peakMemoryOf(...ours));
        const memory = median(peaks);
        return [
            figure('missing fonts of a 100 MB document', 's', time, 1.5),
            figure(
                'peak memory of the same, against its limit',
                'MiB',
                { ours: memory, peer: memoryLimit, ratio: memory / memoryLimit },
                1.0,
            ),
        ];
    } finally {
        rmSync(directory, { recursive: true });
    }
}
