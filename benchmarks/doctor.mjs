// What a hundred checks of the doctor cost beside their probes alone, and what the user waits for.

import { execFileSync, spawn, spawnSync } from 'node:child_process';
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { bounded, compare, figure, median } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';

const rounds = 9;
const checkCount = 100;
const longestMs = 1000;
const longestExplanationMs = 300;

/** One of each usual kind; they are repeated with another number until there are enough. */
const looks = (number) => [
    { file: `$HOME/file${number}`, writable: false },
    { files: '$HOME/*', count: { over: 10000 } },
    { ini: `$HOME/settings${number}.conf`, section: 'a', key: 'b', value: 'wrong' },
    { json: `$HOME/settings${number}.json`, key: ['a', 'b'], value: 'wrong' },
    { line: `$HOME/settings${number}.conf`, pattern: '^wrong', present: true },
    { environment: `VARIABLE${number}`, present: true },
    { process: `program${number}`, running: true },
    { package: `package${number}`, installed: true },
    { font: `Family ${number}`, installed: true },
    { locale: `xx_${number}.UTF-8`, installed: true },
    { library: `libc.so.6`, loadable: false },
    { mimeDefault: 'text/plain', entry: `entry${number}.desktop` },
    { diskSpace: '$HOME', free: { under: '1 B' } },
    { mount: '$HOME', readOnly: true },
    { command: `command${number}`, found: true },
    { kernel: true, release: { under: '2.6' } },
    { account: 'root', exists: false },
    { membership: 'root', exists: false },
    { resourceLimit: 'files', soft: { under: 8 } },
    { kernelSetting: 'kernel/ostype', value: 'wrong' },
];

function writeChecks(home) {
    const checks = Array.from({ length: checkCount }, (_, index) => {
        const number = Math.floor(index / looks(0).length);
        return {
            id: `bench.check${index}`,
            title: 'a check',
            look: looks(number)[index % looks(0).length],
            finding: { text: 'found' },
        };
    });
    const directory = join(home, '.config/office-assistant/checks.d');
    mkdirSync(directory, { recursive: true });
    const file = join(directory, 'bench.json');
    writeFileSync(file, JSON.stringify({ checks }));
    for (let number = 0; number < checkCount / looks(0).length; number++) {
        writeFileSync(join(home, `file${number}`), 'x');
        writeFileSync(join(home, `settings${number}.conf`), '[a]\nb=right\n');
        writeFileSync(join(home, `settings${number}.json`), '{"a": {"b": "right"}}');
    }
    return { file, ids: checks.map(({ id }) => id) };
}

/** The median time in which a command line ends, whatever it finds. */
function medianTime(program, args, env) {
    const times = [];
    for (let round = 0; round < rounds; round++) {
        const begin = performance.now();
        const { status } = spawnSync(program, args, { env });
        if (status === null || status === 2) throw new Error(`${args.join(' ')}: status ${status}`);
        times.push(performance.now() - begin);
    }
    return median(times);
}

/** @param {{assistantctl: string, probeChecks: string}} programs */
export async function doctorFigures({ assistantctl, probeChecks }) {
    return withPrivateHome(async (env, home) => {
        const { file, ids } = writeChecks(home);
        const run = (how) =>
            Number(execFileSync(probeChecks, [file, how], { env, encoding: 'utf8' }));
        const session = spawn('sleep', ['100'], {
            env: { ...env, DISPLAY: ':99' },
            stdio: 'ignore',
        });
        const whyInput = ['why', 'input', '--json', `${session.pid}`];
        const explained = medianTime(assistantctl, whyInput, env);
        session.kill();
        return [
            figure(
                `${checkCount} checks, against their probes alone`,
                'ms',
                await compare(
                    rounds,
                    () => run('checks'),
                    () => run('probes'),
                ),
                1.3,
            ),
            bounded(
                `${checkCount} checks from the terminal`,
                'ms',
                medianTime(assistantctl, ['doctor', '--json', ...ids], env),
                longestMs,
            ),
            bounded('why input', 'ms', explained, longestExplanationMs),
        ];
    });
}
