import path from 'node:path';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { SUITE } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { CONFIG, LOG, UPDATER } from '../update/updater.mjs';

const BUILD = path.dirname(SUITE);
/** The command line waits for each answer before the next command, so this runs a unit test. */
const PROGRAM = path.join(BUILD, 'tests/tst_nestedcommands/tst_nestedcommands');
const CALLS = '/tmp/calls';

const OPTIONS = {
    testupdate: '/from:manual',
    testdailyreport: '/from:lumstart',
    testuninstallreport: '/senduninstallinfo:true',
    testinstallreport: '/sendinstallinfo:true',
};

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ env: { ASSISTANT_TEST_IN_PRIVATE_ROOT: '1' } });
    root.bind(BUILD, BUILD);
    await root.writeFile(UPDATER, `#!/bin/sh\necho "$*" >> ${CALLS}\n`, { mode: 0o755 });
    await root.writeFile(CONFIG, '[update]\na=1\n');
    await root.writeFile(LOG, 'text');
    await root.writeFile(CALLS, '');
});

afterEach(async () => root.dispose());

function runInside(outer, commands) {
    const rows = commands.map(
        (inner) => `everyCommandIsAnsweredWhileAnotherWaits:${inner} in ${outer}`,
    );
    // The program does not wait for what it started; that ends with the root.
    const script = `"$@"; status=$?
        until [ "$(wc -l < ${CALLS})" -ge ${Object.keys(OPTIONS).length} ]; do sleep 0.02; done
        exit $status`;
    return root.run(['bash', '-c', script, 'run', PROGRAM, ...rows]);
}

test.each(['screenshots', 'openremoveurlcheck'])(
    'commands for log, configuration and updater run while %s waits',
    async (outer) => {
        const commands = ['clearlogfile', 'changeupdateconfig', ...Object.keys(OPTIONS)];
        const end = await runInside(outer, commands);
        expect(end.stdout).toMatch(
            new RegExp(`^Totals: ${commands.length + 2} passed, 0 failed`, 'm'),
        );
        expect(end.status).toBe(0);
        expect(await root.exists(LOG)).toBe(false);
        // In any order: each launch is a separate process.
        const calls = (await root.readFile(CALLS)).split('\n').filter(Boolean);
        expect(calls.sort()).toEqual(Object.values(OPTIONS).sort());
        expect(await root.readFile(CONFIG)).toMatch(/^a=1\n.*usagecollected=/ms);
    },
);
