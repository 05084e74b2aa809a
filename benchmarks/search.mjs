// Figures of the file search with 150,000 files, against bare plocate and find.

import { waitFor } from 'browser-driver';
import { existsSync, mkdirSync, mkdtempSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { fileURLToPath } from 'node:url';
import { bounded, compare, figure, median } from './measure.mjs';
import { secondsOf } from './processes.mjs';
import { TimedSession } from './timedsession.mjs';

const fileCount = 150_000;
const rareEvery = 1500;
const rounds = 21;
const longestPauseSeconds = 0.05;

function makeFiles(home) {
    for (let number = 0; number < fileCount; number++) {
        const folder = `${home}/folder${Math.floor(number / 5000)}/part${Math.floor(number / 100)}`;
        if (number % 100 === 0) mkdirSync(folder, { recursive: true });
        writeFileSync(`${folder}/${number % rareEvery === 0 ? 'report' : 'note'}${number}.txt`, '');
    }
}

function databaseIn(home) {
    const directory = `${home}/.cache/orvane-office-assistant`;
    const names = existsSync(directory) ? readdirSync(directory) : [];
    const name = names.find((each) => each.endsWith('.db'));
    return name && `${directory}/${name}`;
}

/** Brings the database up to date and waits for that. */
async function refresh(session, home) {
    await session.secondsUntil({ command: 'router', args: { type: 'searchfile' } }, '"router"');
    await waitFor(() => databaseIn(home), { what: 'the database', everyMs: 50 });
    await session.search('the end of a search comes after the refresh');
    return databaseIn(home);
}

/** The longest of several answer times of a command while hits stream in. */
async function answerDuringSearch(session) {
    const searched = session.search('note');
    const answers = [];
    for (let id = 0; id < 5; id++) {
        const request = { id: `during${id}`, command: 'getcollectionpage' };
        answers.push((await session.secondsUntil(request, `"during${id}"`)).end);
    }
    await searched;
    return Math.max(...answers);
}

async function measure(session, home) {
    const firstHits = [];
    const searchSeconds = async () => {
        const { end, firstHit } = await session.search('report');
        firstHits.push(firstHit);
        return end;
    };
    const database = await refresh(session, home);
    const plocate = [
        'plocate',
        ['--null', '--basename', '--ignore-case', '--database', database, 'report'],
    ];
    // Case-insensitive search beyond ASCII needs a UTF-8 locale, and is slower with it.
    const env = { ...process.env, LC_ALL: 'C.UTF-8' };
    const find = ['find', [home, '-iname', '*report*']];
    return [
        figure(
            'file search against plocate',
            's',
            await compare(rounds, searchSeconds, () => secondsOf(...plocate, { env })),
            1.1,
        ),
        figure(
            'file search against find',
            's',
            await compare(5, searchSeconds, () => secondsOf(...find)),
            0.1,
        ),
        bounded(
            'first hit of a file search, within 50 ms',
            's',
            median(firstHits),
            longestPauseSeconds,
        ),
        bounded(
            'command answered during 150,000 hits, within 50 ms',
            's',
            await answerDuringSearch(session),
            longestPauseSeconds,
        ),
    ];
}

/** @param {{assistantctl: string}} programs */
export async function searchFigures({ assistantctl }) {
    const home = mkdtempSync(`${tmpdir()}/filesearch-`);
    try {
        makeFiles(home);
        const env = { ...process.env, HOME: home, XDG_RUNTIME_DIR: home };
        for (const name of [
            'XDG_CACHE_HOME',
            'XDG_CONFIG_HOME',
            'XDG_DATA_HOME',
            'HELIO_SEARCH_ROOTS',
        ]) {
            delete env[name];
        }
        const session = new TimedSession(assistantctl, env);
        try {
            return await measure(session, home);
        } finally {
            await session.close();
        }
    } finally {
        rmSync(home, { recursive: true, force: true });
    }
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const office = fileURLToPath(new URL('../build/suite/office', import.meta.url));
    for (const { name, ours, peer, ratio, goal } of await searchFigures({
        assistantctl: `${office}/assistantctl`,
    })) {
        console.log(
            `${name}: ${ratio.toFixed(3)} = ${ours.toPrecision(3)} s / ${peer.toPrecision(3)} s (goal ${goal})`,
        );
    }
}
