// Figures of each listing or probing command, against the same tools run from a plain sh.

import { on } from 'node:events';
import { chmodSync, mkdirSync, readFileSync, rmSync, watch, writeFileSync } from 'node:fs';
import { compare, figure } from './measure.mjs';
import { scripts } from './workplace.mjs';

const goal = 1.15;
/** Commands that take milliseconds are measured more often than long ones. */
const fewRounds = 7;
const manyRounds = 41;
const longestWaitMs = 30_000;

const columns = '\'{print $1 " " $2 " " $10 " " $9 " " $12 " " $13 " " $14}\'';
const processes = (column) =>
    `top -n 1 -b | sed -n '8,$p' | sort -rn -k${column} | head  -n 10 | awk -F" " ${columns}`;

/** The environment snapshot's probes, as a person would type them. */
const snapshotScript = (place) => `
uname -srm
cat ${place.office}/cfgs/setup.cfg
grep -h -e ^Name -e ^Exec /usr/share/applications/*libreoffice*.desktop
bash ${scripts}getbrowserinfo.sh
fc-list -f '%-40{family[0]}%{style} \n'
cat /proc/cpuinfo | grep name | cut -f2 -d:
env
true
`;

const oftenUsed = (place) => [
    `${place.home}/.config/Orvane/Office.conf`,
    `${place.home}/.config`,
    `${place.home}/.config/Orvane`,
];

/**
 * Commands that have finished their work when they answer, and what each runs.
 *
 * @returns {[string, number, string, object?][]}
 */
function answeredListings(place) {
    const template = `${place.office}/asso_template`;
    const often = oftenUsed(place);
    const document = `${place.home}/letter.doc`;
    writeFileSync(document, '{\\rtf1\\ansi{\\fonttbl{\\f0 No Such Font;}}\\f0 Hello\\par}');
    return [
        ['getcpuinfo', fewRounds, processes(9)],
        ['getmemoryinfo', fewRounds, processes(10)],
        [
            'getcomputermemory',
            manyRounds,
            'free | sed -n \'2,2p\' | awk -F" " \'{print $2 " " $3}\'',
        ],
        ['getassomime', fewRounds, `bash ${scripts}getmimeinfo.sh ${template}`],
        ['getassoopen', fewRounds, `bash ${scripts}getopeninfo.sh ${template}`],
        ['getdesktopiconfile', manyRounds, `bash ${scripts}getdesktopfile.sh`],
        ['stratcheckenv', manyRounds, snapshotScript(place)],
        ['stratextractfileinfo', manyRounds, `stat -c '%U|%G|%a|%y' ${often.join(' ')}`],
        [
            'comparefont',
            manyRounds,
            `bash ${scripts}extractfont.sh ${place.office} vyr ${document}`,
            { filepath: Buffer.from(document).toString('base64') },
        ],
    ];
}

/** Seconds until a file that a script appends to has that many lines. */
async function secondsUntilLines(file, count, start) {
    writeFileSync(file, '');
    const watcher = watch(file);
    const changes = on(watcher, 'change', { signal: AbortSignal.timeout(longestWaitMs) });
    try {
        const begin = process.hrtime.bigint();
        const started = start();
        while (readFileSync(file, 'utf8').split('\n').length <= count) await changes.next();
        const end = process.hrtime.bigint();
        await started;
        return Number(end - begin) / 1e9;
    } finally {
        watcher.close();
    }
}

/**
 * The command answers before the listing ends, so this waits for its last line. The time that the
 * toolkit's file dialogs take counts on both sides: the peer's last dialog is cancelled.
 */
async function permissionFigures(place, session) {
    const often = oftenUsed(place);
    const file = `${place.home}/permissions.txt`;
    /** @type {[string, string[], string[]][]} */
    const listings = [
        ['exportoftenfileperm', [], often],
        ['exportspecialfileperm', [often[0]], [often[0]]],
    ];
    const figures = [];
    for (const [command, choices, paths] of listings) {
        const ours = () =>
            secondsUntilLines(file, paths.length, () =>
                session.secondsOf(command, {}, [...choices, file]),
            );
        const peer = async () =>
            (await session.secondsOf(command, {}, choices)) +
            (await secondsUntilLines(file, paths.length, () =>
                place.shell(`bash ${scripts}getfileinfo.sh ${file} ${paths.join(' ')}`),
            ));
        figures.push(
            figure(
                `${command} against its dialogs and its script`,
                's',
                await compare(manyRounds, ours, peer),
                goal,
            ),
        );
    }
    return figures;
}

/** A check tool that answers at once, so that only the library's own time is measured. */
function installCheckTool(place) {
    const tool = `${place.office}/vyrEnvCheckTool`;
    const answer = `${place.home}/.local/share/Orvane/tmp/vyrEnv.ini`;
    rmSync(tool, { force: true });
    writeFileSync(
        tool,
        `#!/bin/bash
mkdir -p ${place.home}/.local/share/Orvane/tmp
printf '[vyrEnv]\\n%s-%s=ok\\n' "$2" "$1" > ${answer}
cat ${answer} /etc/os-release | sort | uniq -c > /dev/null
`,
    );
    chmodSync(tool, 0o755);
    return tool;
}

async function environmentCheckFigure(place, session) {
    const tool = installCheckTool(place);
    const request = { page: 'child', command: 'vyrenvcheck', args: { type: 'fonts', app: 'vyr' } };
    const ours = async () => (await session.secondsUntil(request, '"returnvyrenvcheck"')).end;
    return figure(
        'vyrenvcheck against its tool',
        's',
        await compare(manyRounds, ours, () => place.shell(`${tool} fonts vyr ''`)),
        goal,
    );
}

/** The check looks for the daemon among all processes. */
async function inputCheckFigure(place) {
    const probe = "readlink /proc/[0-9]*/exe | grep '/ibus-daemon$'; cat /etc/machine-id";
    return place.withSession(
        async (session) => {
            await session.expectAnswer('inputcheck');
            return figure(
                'inputcheck against its probe',
                's',
                await compare(
                    manyRounds,
                    () => session.secondsOf('inputcheck'),
                    () => place.shell(probe),
                ),
                goal,
            );
        },
        { ...place.env, QT_IM_MODULE: 'ibus' },
    );
}

export async function listingFigures(place) {
    const settings = `${place.home}/.config/Orvane`;
    mkdirSync(settings, { recursive: true });
    writeFileSync(`${settings}/Office.conf`, '[6.0]\n');
    return place.withSession(async (session) => {
        const figures = [];
        for (const [command, rounds, pipeline, args] of answeredListings(place)) {
            await session.expectAnswer(command, args);
            figures.push(
                figure(
                    `${command} against its pipeline`,
                    's',
                    await compare(
                        rounds,
                        () => session.secondsOf(command, args),
                        () => place.shell(pipeline),
                    ),
                    goal,
                ),
            );
        }
        return [
            ...figures,
            ...(await permissionFigures(place, session)),
            await environmentCheckFigure(place, session),
            await inputCheckFigure(place),
        ];
    });
}
