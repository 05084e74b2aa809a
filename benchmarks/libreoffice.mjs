// How long the checks of LibreOffice take: with a profile that it has just made, a full one, and
// what should not be there.

import { execFileSync, spawnSync } from 'node:child_process';
import { mkdirSync, readFileSync, truncateSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { bounded, median } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';

const rounds = 9;
const recentEntries = 10_000;
const extensions = 200;
/** As much as is read of a file. */
const mostRecentEntries = 24_000;
const hugeSettings = 200_000_000;
const hugeFiles = 10;
const hugeFile = 200_000_000;
const longestMs = 2000;
const mostMebibytes = 100;

function makeProfile(env, home) {
    const text = join(home, 'a.txt');
    writeFileSync(text, 'text\n');
    execFileSync('soffice', ['--headless', '--convert-to', 'odt', '--outdir', home, text], {
        env,
        timeout: 60_000,
    });
    return join(home, '.config/libreoffice/4/user');
}

function addRecentEntries(profile, count) {
    const settings = join(profile, 'registrymodifications.xcu');
    const entry = (number) =>
        `<item oor:path="/org.openoffice.Office.Histories/Histories/org.openoffice.Office.Histories:HistoryInfo['PickList']/ItemList"><node oor:name="file:///home/user/Documents/letter%20${number}.odt" oor:op="replace"><prop oor:name="Filter" oor:op="fuse"><value>writer8|com.sun.star.text.TextDocument</value></prop><prop oor:name="Password" oor:op="fuse"><value></value></prop><prop oor:name="Thumbnail" oor:op="fuse"><value></value></prop><prop oor:name="Title" oor:op="fuse"><value>Letter ${number}</value></prop></node></item>\n`;
    const entries = Array.from({ length: count }, (_, number) => entry(number)).join('');
    writeFileSync(
        settings,
        readFileSync(settings, 'utf8').replace('</oor:items>', `${entries}</oor:items>`),
    );
}

function addExtensions(profile) {
    const cache = join(profile, 'uno_packages/cache');
    const registry = join(
        cache,
        'registry/com.sun.star.comp.deployment.bundle.PackageRegistryBackend',
    );
    const names = Array.from({ length: extensions }, (_, number) => `extension${number}.oxt`);
    for (const name of names) {
        const folder = join(cache, 'uno_packages', `lu${name}_`, name);
        mkdirSync(folder, { recursive: true });
        writeFileSync(join(folder, 'description.xml'), '<description/>');
    }
    mkdirSync(registry, { recursive: true });
    const items = names.map(
        (name) =>
            `<bundle:extension url="vnd.sun.star.expand:$UNO_USER_PACKAGES_CACHE/uno_packages/lu${name}_/${name}"><bundle:items><bundle:item url="x"/></bundle:items></bundle:extension>`,
    );
    writeFileSync(
        join(registry, 'backenddb.xml'),
        `<?xml version="1.0"?>\n<bundle:list xmlns:bundle="x">${items.join('\n')}</bundle:list>\n`,
    );
}

/** Settings of 200 MB in a profile of 2 GB, most of which no disk has to hold. */
function bloatProfile(profile) {
    truncateSync(join(profile, 'registrymodifications.xcu'), hugeSettings);
    mkdirSync(join(profile, 'backup'), { recursive: true });
    for (let number = 0; number < hugeFiles; number++) {
        const file = join(profile, 'backup', `${number}.odt`);
        writeFileSync(file, '');
        truncateSync(file, hugeFile);
    }
}

/**
 * The processor time in ms, which other programs do not lengthen, and the memory in MiB that one
 * look with all checks of LibreOffice takes.
 */
function look(assistantctl, env, ids) {
    const times = [];
    let mebibytes = 0;
    for (let round = 0; round < rounds; round++) {
        const { status, stdout: report } = spawnSync(
            '/usr/bin/time',
            [
                '-f',
                '%M %U %S',
                '-o',
                join(env.HOME, 'used'),
                assistantctl,
                'doctor',
                '--json',
                ...ids,
            ],
            { env: { ...env, LANG: 'C.UTF-8', LC_ALL: 'C.UTF-8' }, encoding: 'utf8' },
        );
        // 1: something was found.
        if (status > 1 || /"result":"failed"/.test(report)) throw new Error(report);
        const used = readFileSync(join(env.HOME, 'used'), 'utf8').trim().split('\n').at(-1);
        const [kibibytes, user, system] = used.split(' ').map(Number);
        times.push(1000 * (user + system));
        mebibytes = Math.max(mebibytes, kibibytes / 1024);
    }
    return { ms: median(times), mebibytes };
}

/** @param {{assistantctl: string}} programs */
export async function libreofficeFigures({ assistantctl }) {
    return withPrivateHome(async (env, home) => {
        const profile = makeProfile(env, home);
        const list = execFileSync(assistantctl, ['doctor', '--list', '--json'], {
            env,
            encoding: 'utf8',
        });
        const ids = [...list.matchAll(/"check":"(libreoffice\.[^"]+)"/g)]
            .map(([, id]) => id)
            // Notes about fonts that this machine lacks would be findings.
            .filter((id) => !id.startsWith('libreoffice.fonts-'));
        const fresh = look(assistantctl, env, ids);
        addRecentEntries(profile, recentEntries);
        addExtensions(profile);
        const full = look(assistantctl, env, ids);
        addRecentEntries(profile, mostRecentEntries - recentEntries);
        const most = look(assistantctl, env, ids);
        bloatProfile(profile);
        const bloated = look(assistantctl, env, ids);
        return [
            bounded(
                `processor time of ${ids.length} checks of LibreOffice`,
                'ms',
                fresh.ms,
                longestMs,
            ),
            bounded('their memory with a full profile', 'MiB', full.mebibytes, mostMebibytes),
            bounded(
                `the same with ${recentEntries} recent documents and ${extensions} extensions`,
                'ms',
                full.ms,
                3 * longestMs,
            ),
            bounded(`with ${mostRecentEntries}`, 'ms', most.ms, 3 * longestMs),
            bounded('their memory', 'MiB', most.mebibytes, mostMebibytes),
            bounded('with settings of 200 MB and a profile of 2 GB', 'ms', bloated.ms, longestMs),
            bounded('their memory', 'MiB', bloated.mebibytes, mostMebibytes),
        ];
    });
}
