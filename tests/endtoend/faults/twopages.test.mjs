import { waitFor } from 'browser-driver';
import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { Session } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { staging, workDirectory } from './faults.mjs';

const toolScript = `#!/bin/bash
touch ~/running
while [ ! -e ~/go ]; do sleep 0.02; done
mkdir -p ${workDirectory}
printf '[vyrEnv]\\n%s-%s=ok\\n' "$2" "$1" > ${workDirectory}/vyrEnv.ini
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

test('both pages of one process ask in turn while a check is under way', async () => {
    await root.writeFile('/suite/office/vyrEnvCheckTool', toolScript, { mode: 0o755 });
    await root.writeFile('/home/user/kept.docx', 'mine');
    const session = Session.start(root);
    await session.send({ command: 'startDump' });
    await session.send({ command: 'vyrenvcheck', page: 'child', args: { type: 't', app: 'vyr' } });
    await waitFor(() => root.exists('/home/user/running'), { what: 'the check tool' });
    for (const page of ['main', 'child', 'main', 'child']) {
        const name = `/tmp/report-${page}`;
        const args = { infopage: page };
        await session.send({ command: 'feedbacktovyr', page, args });
        expect((await session.send({ command: 'exportsysinfo', page, choose: [name] })).page).toBe(
            page,
        );
        expect((await session.send({ command: 'getassomime', page })).result).toHaveLength(3);
        await session.send({ command: 'startsearchfile', page, args: { keyword: 'kept' } });
    }
    for (const page of ['main', 'child']) {
        expect((await session.send({ command: 'getcollectionpage', page })).result).toEqual({
            page,
        });
    }
    await root.writeFile('/home/user/go', '');
    expect(await session.callback('returnvyrenvcheck')).toMatchObject({ page: 'child' });
    // A stopped search does not report its end; the last one reports to both pages.
    const ends = [
        await session.callback('searchfilefinish'),
        await session.callback('searchfilefinish'),
    ];
    expect(ends.map(({ page }) => page).sort()).toEqual(['child', 'main']);
    expect((await session.close()).status).toBe(0);
    expect(await root.readFile('/home/user/kept.docx')).toBe('mine');
});

describe('two processes in one home', () => {
    const sessionInput = `{"command":"getassomime"}
{"command":"getdesktopiconfile"}
{"command":"startDump"}
{"command":"exportsysinfo","choose":["/tmp/report"]}
`;

    test('start and end at the same time, and each is answered', async () => {
        await root.writeFile('/home/user/session', sessionInput.repeat(3));
        await root.writeFile(`${workDirectory}/dump/vyr_1.dmp`, 'a dump');
        const end = await root.run([
            'bash',
            '-c',
            `
            for number in 1 2 3 4; do
                sed "s#/tmp/report#/tmp/report$number#" ~/session \\
                    | /suite/office/assistantctl --session > /tmp/events$number &
                processes="$processes $!"
            done
            for process in $processes; do wait $process || exit 1; done`,
        ]);
        expect(end.status).toBe(0);
        for (const number of [1, 2, 3, 4]) {
            const lines = (await root.readFile(`/tmp/events${number}`)).split('\n').slice(0, -1);
            const answers = lines.map((line) => JSON.parse(line));
            expect(answers.map(({ type }) => type)).toEqual(Array(12).fill('answer'));
            const report = await root.readFile(`/tmp/report${number}`);
            expect(report.split('kernel-begin')).toHaveLength(4);
        }
        expect(await root.readFile(`${workDirectory}/dump/vyr_1.dmp`)).toBe('a dump');
    });

    test('one that ends leaves the scripts to the other one, which removes them', async () => {
        const end = await root.run([
            'bash',
            '-c',
            `
            coproc /suite/office/assistantctl --session
            answered() { echo "$1" >&"\${COPROC[1]}" && IFS= read -r -t 60 line <&"\${COPROC[0]}"; }
            answered '{"command":"getassomime"}' && echo "$line"
            /suite/office/assistantctl getassomime > /dev/null
            ls ${staging} | wc -l
            answered '{"command":"getassomime"}' && echo "$line"
            eval "exec \${COPROC[1]}>&-"
            wait "$COPROC_PID"
            ls ${staging} | wc -l`,
        ]);
        const [first, countWhileUsed, second, countAtEnd] = end.stdout.split('\n');
        expect(Number(countWhileUsed)).toBe(1);
        expect(Object.keys(JSON.parse(first).result[0]).length).toBeGreaterThan(0);
        expect(JSON.parse(second).result).toEqual(JSON.parse(first).result);
        expect(Number(countAtEnd)).toBe(0);
    });
});
