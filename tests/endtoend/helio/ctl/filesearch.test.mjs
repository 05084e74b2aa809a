import fs from 'node:fs';
import path from 'node:path';

import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand, Session } from '../../assistantctl.mjs';
import { base64 } from '../../base64.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';

const home = '/home/user';
const databaseDirectory = `${home}/.cache/orvane-office-assistant`;
const hitCallback = 'startsearchfileCallBack';
const endCallback = 'searchfilefinish';

/**
 * A refresh is slow on a busy machine, and a search waits at most 25 seconds for it. So it runs at
 * normal priority here.
 */
const usualPriority = '#!/bin/sh\nshift 2\nexec "$@"\n';

let root;

afterEach(async () => root.dispose());

async function createRoot(options) {
    root = await SandboxRoot.create({ suite: true, ...options });
    await root.fake('nice', usualPriority);
}

/** Makes an empty file; name may be bytes. */
function makeFile(name, directory = home) {
    const host = Buffer.concat([Buffer.from(`${root.hostPath(directory)}/`), Buffer.from(name)]);
    fs.mkdirSync(host.subarray(0, host.lastIndexOf('/')), { recursive: true });
    fs.writeFileSync(host, '');
}

/** The paths of the hits among events, of one page if that is named. */
function pathsOf(events, page) {
    const decode = (text) => Buffer.from(text, 'base64').toString('utf8');
    return events
        .filter(({ type, callback }) => type === 'callback' && callback === hitCallback)
        .filter((event) => page === undefined || event.page === page)
        .map(({ result }) => {
            const members = Object.entries(result);
            expect(members).toHaveLength(1);
            const [[name, directory]] = members;
            return `${decode(directory)}/${decode(name)}`;
        })
        .sort();
}

async function search(keyword, options = {}) {
    const end = await runCommand(
        root,
        'startsearchfile',
        { keyword },
        { until: endCallback, ...options },
    );
    expect(end.status).toBe(0);
    expect(end.answer).not.toHaveProperty('result');
    expect(end.events.at(-1)).toMatchObject({ callback: endCallback, result: 'success' });
    return pathsOf(end.events);
}

async function databases() {
    const names = (await root.exists(databaseDirectory)) ? await root.list(databaseDirectory) : [];
    return names.filter((name) => name.endsWith('.db'));
}

/** Opens the search view, and waits until the database is there and the refresh has ended. */
async function makeDatabase() {
    const session = Session.start(root);
    await session.send({
        command: 'router',
        args: { page: 'searchfile.html', type: 'searchfile' },
    });
    await waitFor(async () => (await databases()).length > 0, {
        timeoutMs: 90_000,
        what: 'the database',
    });
    await session.send({ command: 'startsearchfile', args: { keyword: 'anything' } });
    await session.callback(endCallback);
    await session.close();
    await age(0);
}

/** Makes the last refresh look that many seconds old; from 45 on a search starts another one. */
async function age(seconds) {
    const time = new Date(Date.now() - seconds * 1000);
    for (const name of (await root.list(databaseDirectory)).filter((each) =>
        /\.(db|lock)$/.test(each),
    )) {
        fs.utimesSync(root.hostPath(`${databaseDirectory}/${name}`), time, time);
    }
}

describe('with the real plocate', () => {
    beforeEach(async () => {
        await createRoot();
    });

    test('a hit is one member, name and directory in base64', async () => {
        makeFile('a b.txt');
        const { events } = await runCommand(
            root,
            'startsearchfile',
            { keyword: 'a b' },
            { until: endCallback },
        );
        expect(events.filter(({ callback }) => callback === hitCallback)).toEqual([
            {
                type: 'callback',
                page: 'main',
                callback: hitCallback,
                result: { [base64('a b.txt')]: base64(home) },
            },
        ]);
    });

    test('a new home is searched without a database, and later with one', async () => {
        makeFile('folder/report.txt');
        expect(await search('report')).toEqual([`${home}/folder/report.txt`]);
        expect(await databases()).toEqual([]);
        await makeDatabase();
        makeFile('unlisted-report.txt');
        expect(await search('REPORT')).toEqual([`${home}/folder/report.txt`]);
        await age(60);
        expect(await search('report')).toEqual([
            `${home}/folder/report.txt`,
            `${home}/unlisted-report.txt`,
        ]);
    });

    test('names and keywords are plain text', async () => {
        const cases = {
            'b  c': 'a b  c.txt',
            '"it\'s"': 'say "it\'s".txt',
            'e\nt': 'one\ntwo.txt',
            'r*f': 'star*file',
            'y?.': 'why?.txt',
            'e[1]': 'one[1].txt',
            'k\\s': 'back\\slash',
            '-rf': '-rf',
            '--until': '--until',
            '$(id)': '$(id)`id`;id',
            报告: '一份报告.txt',
        };
        for (const name of Object.values(cases)) makeFile(name);
        makeFile('decoy a-b-c its one two starfile why one1 backslash');
        const found = async () => {
            const session = Session.start(root);
            const paths = {};
            for (const keyword of Object.keys(cases)) {
                const begin = session.events.length;
                await session.send({ command: 'startsearchfile', args: { keyword } });
                await session.callback(endCallback);
                paths[keyword] = pathsOf(session.events.slice(begin));
            }
            await session.close();
            return paths;
        };
        const expected = Object.fromEntries(
            Object.entries(cases).map(([keyword, name]) => [keyword, [`${home}/${name}`]]),
        );
        expect(await found()).toEqual(expected);
        await makeDatabase();
        expect(await found()).toEqual(expected);
    });

    test('bytes that are not UTF-8 reach the page as replacement characters', async () => {
        makeFile(Buffer.from('bad\xffreport', 'latin1'));
        expect(await search('report')).toEqual([`${home}/bad\ufffdreport`]);
        await makeDatabase();
        expect(await search('report')).toEqual([`${home}/bad\ufffdreport`]);
    });

    test('bind mounts, version-control folders and /tmp are searched', async () => {
        const mounted = fs.mkdtempSync(path.join(root.hostPath('/tmp'), 'mounted'));
        fs.writeFileSync(path.join(mounted, 'report-mounted'), '');
        root.bind(mounted, `${home}/mount`);
        makeFile('.git/report-git');
        makeFile('report-tmp', '/tmp/own');
        const env = { HELIO_SEARCH_ROOTS: '~,/tmp/own' };
        const expected = [
            '/home/user/.git/report-git',
            '/home/user/mount/report-mounted',
            '/tmp/own/report-tmp',
        ];
        expect(await search('report-', { env })).toEqual(expected);
        const wait = `until [ "$(ls ${databaseDirectory}/*.db | wc -l)" = 2 ]; do sleep 0.05; done`;
        await root.run(
            [
                'sh',
                '-c',
                '/suite/office/assistantctl router type=searchfile; ' + `${wait} 2> /dev/null`,
            ],
            { env },
        );
        await age(0);
        makeFile('report-unlisted');
        expect(await search('report-', { env })).toEqual(expected);
    });

    test('helio.ini names other roots', async () => {
        makeFile('report-home');
        makeFile('report-one', '/tmp/one');
        makeFile('report-two', '/tmp/with blank');
        await root.writeFile('/suite/office/helio.ini', 'searchRoots=/tmp/one, /tmp/with blank\n');
        expect(await search('report-')).toEqual([
            '/tmp/one/report-one',
            '/tmp/with blank/report-two',
        ]);
    });

    test('what cannot be read is passed over', async () => {
        makeFile('locked/report1');
        makeFile('open/report2');
        fs.chmodSync(root.hostPath(`${home}/locked`), 0);
        expect(await search('report')).toEqual([`${home}/open/report2`]);
        await makeDatabase();
        expect(await search('report')).toEqual([`${home}/open/report2`]);
    });

    test('a database requested by router is built even if assistantctl has ended', async () => {
        makeFile('report');
        const end = await root.run([
            'sh',
            '-c',
            '/suite/office/assistantctl router type=searchfile' +
                ` && until ls ${databaseDirectory}/*.db 2> /dev/null; do sleep 0.05; done`,
        ]);
        expect(end.status).toBe(0);
        const names = await root.list(databaseDirectory);
        expect(names.map((name) => path.extname(name)).sort()).toEqual(['.db', '.lock', '.log']);
        expect((await root.stat(databaseDirectory)).mode & 0o777).toBe(0o700);
        for (const name of names) {
            expect((await root.stat(`${databaseDirectory}/${name}`)).mode & 0o777).toBe(0o600);
        }
        await age(0);
        makeFile('report-unlisted');
        expect(await search('report')).toEqual([`${home}/report`]);
    });

    test('a search that one page starts reaches both pages', async () => {
        makeFile('report');
        const session = Session.start(root);
        await session.send({ command: 'getcollectionpage', page: 'child' });
        await session.send({ command: 'startsearchfile', args: { keyword: 'report' } });
        const ends = [await session.callback(endCallback), await session.callback(endCallback)];
        expect(ends.map(({ page }) => page).sort()).toEqual(['child', 'main']);
        expect(pathsOf(session.events, 'main')).toEqual([`${home}/report`]);
        expect(pathsOf(session.events, 'child')).toEqual([`${home}/report`]);
        await session.close();
    });

    test('opensearchfile opens a file and stays silent about a path that it refuses', async () => {
        makeFile('report.txt');
        const session = Session.start(root);
        const open = async (file) => session.send({ command: 'opensearchfile', args: { file } });
        expect((await open(`${home}/report.txt`)).result).toBe('success');
        expect(session.traced('opened')).toEqual([
            { type: 'opened', url: `file://${home}/report.txt` },
        ]);
        expect(await open('//server/share/report.txt')).not.toHaveProperty('result');
        expect(await open('')).not.toHaveProperty('result');
        expect(session.traced('opened')).toHaveLength(1);
        await session.close();
    });
});

describe('with a plocate that never ends', () => {
    let session;

    beforeEach(async () => {
        await createRoot();
        await root.fake(
            'updatedb',
            `#!/bin/sh
while [ $# -gt 0 ]; do
    if [ "$1" = --output ]; then echo database > "$2"; fi
    shift
done
`,
        );
        await root.fake(
            'plocate',
            `#!/bin/sh
for word do :; done
printf '%s\\0' ${home}/found
case $word in *endless*) exec sleep 1000 ;; esac
`,
        );
        makeFile('found');
        await makeDatabase();
        session = Session.start(root);
        await session.send({ command: 'startsearchfile', args: { keyword: 'endless' } });
        await session.callback(hitCallback);
    });

    /** The search ends reported so far, after one more search has ended. */
    async function endsAfterAnother() {
        await session.send({ command: 'startsearchfile', args: { keyword: 'found' } });
        await session.callback(endCallback);
        const { events } = await session.close();
        return events.filter(({ callback }) => callback === endCallback).length;
    }

    test('an empty keyword stops the search and starts none', async () => {
        const answer = await session.send({ command: 'startsearchfile', args: { keyword: '' } });
        expect(answer).not.toHaveProperty('result');
        await session.wait(200);
        expect(pathsOf(session.events)).toHaveLength(1);
        expect(await endsAfterAnother()).toBe(1);
    });

    test('closing the child window stops the search', async () => {
        await session.send({ command: 'closechildwindow', args: { type: '' } });
        await session.wait(200);
        expect(pathsOf(session.events)).toHaveLength(1);
        expect(await endsAfterAnother()).toBe(1);
    });

    test('a new search stops the one before', async () => {
        expect(await endsAfterAnother()).toBe(1);
    });

    test('the program ends in the middle of a search', async () => {
        expect((await session.close()).status).toBe(0);
    });
});

test('without plocate the directories are looked through', async () => {
    await createRoot({ hide: ['/usr/bin/plocate'] });
    makeFile('folder/report.txt');
    const session = Session.start(root);
    await session.send({ command: 'router', args: { page: 'x', type: 'searchfile' } });
    await session.send({ command: 'startsearchfile', args: { keyword: 'report' } });
    await session.callback(endCallback);
    expect(pathsOf(session.events)).toEqual([`${home}/folder/report.txt`]);
    await session.close();
    expect(await root.exists(databaseDirectory)).toBe(false);
});

test('a refresh that is killed half way leaves nothing behind', async () => {
    await createRoot();
    makeFile('report');
    await root.fake(
        'updatedb',
        `#!/bin/sh
touch /tmp/running
exec sleep 1000
`,
    );
    // The sandbox ends with assistantctl, and the refresh with it.
    await root.run([
        'sh',
        '-c',
        '/suite/office/assistantctl router type=searchfile;' +
            ' until [ -e /tmp/running ]; do sleep 0.05; done',
    ]);
    await root.remove('/fakes/updatedb');
    expect(await search('report')).toEqual([`${home}/report`]);
    await makeDatabase();
    makeFile('report-unlisted');
    expect(await search('report')).toEqual([`${home}/report`]);
    expect((await root.list(databaseDirectory)).filter((name) => name.includes('.new'))).toEqual(
        [],
    );
});
