// Figures of the library's commands, against the bare pipelines and tools behind them.

import { chmodSync, cpSync, existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync,
    writeFileSync } from 'node:fs';
import { randomFillSync } from 'node:crypto';
import { tmpdir } from 'node:os';
import { setTimeout as pause } from 'node:timers/promises';
import { compare, figure } from './measure.mjs';
import { secondsOf } from './processes.mjs';
import { TimedSession } from './timedsession.mjs';

const scripts = new URL('../plugin/config/', import.meta.url).pathname;
const suffixes = ['pptx', 'ppt', 'pptm', 'pps', 'pot', 'potm', 'potx', 'ppsx', 'shd', 'shdx', 'sht', 'shtx',
    'shds', 'shdo', 'xlsx', 'xls', 'xlsm', 'xlt', 'xltm', 'xltx', 'tbl', 'tblx', 'tbt', 'tbtx', 'tbls', 'tblo',
    'docx', 'docm', 'doc', 'dot', 'dotm', 'dotx', 'vyr', 'vyrx', 'vyrs', 'vyro', 'vyt', 'vytx', 'rtf'];

const columns = '\'{print $1 " " $2 " " $10 " " $9 " " $12 " " $13 " " $14}\'';
const processes = (column) =>
    `top -n 1 -b | sed -n '8,$p' | sort -rn -k${column} | head  -n 10 | awk -F" " ${columns}`;
const reportTools = ['uname -srm', `bash ${scripts}getbrowserinfo.sh`,
    'cat /proc/cpuinfo | grep name | cut -f2 -d:', 'fc-list -f "%-40{family[0]}%{style} \n"', 'id -un', 'env'];

/** A home and a copy of the suite tree with a sample of every document kind. */
class Workplace {
    constructor(suite) {
        this.directory = mkdtempSync(`${tmpdir()}/commands-`);
        this.home = `${this.directory}/home`;
        this.office = `${this.directory}/suite/office`;
        mkdirSync(`${this.home}/.local/share/Orvane`, { recursive: true, mode: 0o700 });
        cpSync(suite, `${this.directory}/suite`, { recursive: true });
        mkdirSync(`${this.office}/asso_template`, { recursive: true });
        for (const suffix of suffixes) writeFileSync(`${this.office}/asso_template/vyr.${suffix}`, 'sample');
        // The scripts look for the desktop below /home/$USER.
        this.env = { ...process.env, HOME: this.home, XDG_RUNTIME_DIR: this.home, USER: `..${this.home}` };
    }

    session() {
        return new TimedSession(`${this.office}/assistantctl`, this.env);
    }

    shell(command) {
        return secondsOf('sh', ['-c', command], { env: this.env });
    }

    async withSession(use) {
        const session = this.session();
        try {
            return await use(session);
        } finally {
            await session.close();
        }
    }

    remove() {
        rmSync(this.directory, { recursive: true, force: true });
    }
}

async function listingFigures(place) {
    const template = `${place.office}/asso_template`;
    const listings = [
        ['getcpuinfo', processes(9)],
        ['getmemoryinfo', processes(10)],
        ['getcomputermemory', "free | sed -n '2,2p' | awk -F\" \" '{print $2 \" \" $3}'"],
        ['getassomime', `bash ${scripts}getmimeinfo.sh ${template}`],
        ['getassoopen', `bash ${scripts}getopeninfo.sh ${template}`],
    ];
    return place.withSession(async (session) => {
        const figures = [];
        for (const [command, pipeline] of listings)
            figures.push(figure(`${command} against its pipeline`, 's',
                await compare(9, () => session.secondsOf(command), () => place.shell(pipeline)), 1.15));
        return figures;
    });
}

async function reportFigure(place) {
    const ours = () => place.withSession(async (session) => {
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

/** A viewer that only leaves a mark, so that the end of the archive script shows. */
function markingViewer(place) {
    const directory = `${place.directory}/fakes`;
    mkdirSync(directory, { recursive: true });
    writeFileSync(`${directory}/xdg-open`, `#!/bin/sh\n: > ${place.directory}/opened\n`);
    chmodSync(`${directory}/xdg-open`, 0o755);
    return { ...place.env, PATH: `${directory}:${process.env.PATH}` };
}

async function archiveFigure(place) {
    const sample = `${place.home}/sample.bin`;
    const noise = Buffer.alloc(1 << 20);
    for (let piece = 0; piece < 200; piece++) writeFileSync(sample, randomFillSync(noise), { flag: 'a' });
    const env = markingViewer(place);
    const mark = `${place.directory}/opened`;
    const ours = async () => {
        rmSync(mark, { force: true });
        const session = new TimedSession(`${place.office}/assistantctl`, env);
        await session.secondsOf('getcollectionpage');
        const begin = process.hrtime.bigint();
        await session.secondsOf('archivepackage', { archiveSample: sample }, [`${place.home}/feedback`]);
        while (!existsSync(mark)) await pause(5);
        const seconds = Number(process.hrtime.bigint() - begin) / 1e9;
        await session.close();
        return seconds;
    };
    const tree = `${place.home}/.local/share/Orvane/tmp/archive`;
    const peer = () => place.shell(`tar -cf - ${tree} 2> /dev/null | gzip > ${place.home}/bare.tar.gz`);
    return figure('feedback archive of 200 MB against tar and gzip', 's', await compare(5, ours, peer), 1.05);
}

const mixedCommands = [
    ['getcollectionpage'], ['feedbacktovyr', { infopage: 'layout' }], ['copytoclipboard', { verification: 'text' }],
    ['router', { page: 'crash.html', type: 'crash' }], ['closechildwindow', { type: 'crash' }], ['getDumpState'],
    ['getupdatesupport'], ['getupdateconfig'], ['changeupdateconfig', { keyvalue: 'a$b' }], ['inputcheck'],
    ['stratextractfileinfo'], ['startsearchfile', { keyword: '' }], ['comparefont', { filepath: 'YQ==' }],
    ['opensearchfile', { file: '/dev/null' }], ['getvyrenvcheckedresult'], ['exportsysinfo'], ['nosuchcommand'],
];
/** Commands that start processes come less often. */
const startingCommands = [['getcomputermemory'], ['getdesktopiconfile'], ['stoppreload']];

async function sendMixed(session, count) {
    for (let n = 0; n < count; n++) {
        const [command, args] = n % 100 === 99 ? startingCommands[Math.floor(n / 100) % startingCommands.length]
            : mixedCommands[n % mixedCommands.length];
        await session.secondsOf(command, args);
    }
}

function holdingsOf(pid) {
    const pages = Number(readFileSync(`/proc/${pid}/statm`, 'utf8').split(' ')[1]);
    return {
        memory: pages / 256,
        descriptors: readdirSync(`/proc/${pid}/fd`).length,
        children: readFileSync(`/proc/${pid}/task/${pid}/children`, 'utf8').trim().split(/\s+/).filter(Boolean).length,
    };
}

async function enduranceFigures(place) {
    return place.withSession(async (session) => {
        await sendMixed(session, 100);
        const early = holdingsOf(session.pid);
        await sendMixed(session, 9900);
        const late = holdingsOf(session.pid);
        const against = (key) => ({ ours: late[key], peer: early[key], ratio: late[key] / early[key] });
        return [
            figure('memory after 10,000 commands against after 100', 'MiB', against('memory'), 1.05),
            figure('open files after 10,000 commands against after 100', 'files', against('descriptors'), 1),
            figure('children left after 10,000 commands', 'processes',
                { ours: late.children, peer: 1, ratio: late.children }, 0),
        ];
    });
}

/** @param {{suite: string}} programs */
export async function commandFigures({ suite }) {
    const place = new Workplace(suite);
    try {
        return [...await listingFigures(place), await reportFigure(place), await archiveFigure(place),
            ...await enduranceFigures(place)];
    } finally {
        place.remove();
    }
}
