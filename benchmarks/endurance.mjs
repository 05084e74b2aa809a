// What a session holds after many commands, compared with after few.

import { readFileSync, readdirSync } from 'node:fs';
import { waitFor } from 'browser-driver';
import { figure } from './measure.mjs';

const mixedCommands = [
    ['getcollectionpage'],
    ['feedbacktovyr', { infopage: 'layout' }],
    ['copytoclipboard', { verification: 'text' }],
    ['router', { page: 'crash.html', type: 'crash' }],
    ['closechildwindow', { type: 'crash' }],
    ['getDumpState'],
    ['getupdatesupport'],
    ['getupdateconfig'],
    ['changeupdateconfig', { keyvalue: 'a$b' }],
    ['inputcheck'],
    ['stratextractfileinfo'],
    ['startsearchfile', { keyword: '' }],
    ['comparefont', { filepath: 'YQ==' }],
    ['opensearchfile', { file: '/dev/null' }],
    ['getvyrenvcheckedresult'],
    ['exportsysinfo'],
    ['nosuchcommand'],
];
/** Commands that start processes are sent less often. */
const startingCommands = [['getcomputermemory'], ['getdesktopiconfile'], ['stoppreload']];

async function sendMixed(session, count) {
    for (let n = 0; n < count; n++) {
        const [command, args] =
            n % 100 === 99
                ? startingCommands[Math.floor(n / 100) % startingCommands.length]
                : mixedCommands[n % mixedCommands.length];
        await session.secondsOf(command, args);
    }
}

function holdingsOf(pid) {
    const pages = Number(readFileSync(`/proc/${pid}/statm`, 'utf8').split(' ')[1]);
    return {
        memory: pages / 256,
        descriptors: readdirSync(`/proc/${pid}/fd`).length,
        children: readFileSync(`/proc/${pid}/task/${pid}/children`, 'utf8')
            .trim()
            .split(/\s+/)
            .filter(Boolean).length,
    };
}

export async function enduranceFigures(place) {
    return place.withSession(async (session) => {
        await sendMixed(session, 100);
        const early = holdingsOf(session.pid);
        await sendMixed(session, 9900);
        // Listings go on by themselves, and the ended ones are collected from time to time.
        await waitFor(() => holdingsOf(session.pid).children === 0, {
            timeoutMs: 5000,
            what: 'the end of the listings',
        }).catch(() => {});
        const late = holdingsOf(session.pid);
        const against = (key) => ({
            ours: late[key],
            peer: early[key],
            ratio: late[key] / early[key],
        });
        return [
            figure(
                'memory after 10,000 commands against after 100',
                'MiB',
                against('memory'),
                1.05,
            ),
            figure(
                'open files after 10,000 commands against after 100',
                'files',
                against('descriptors'),
                1,
            ),
            figure(
                'children left after 10,000 commands',
                'processes',
                { ours: late.children, peer: 1, ratio: late.children },
                0,
            ),
        ];
    });
}
