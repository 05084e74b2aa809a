import path from 'node:path';
import { afterEach, beforeEach, expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile, logFile, updaterPath } from '../update/updater.mjs';

const build = path.dirname(suiteDirectory);
/** The command line waits for each answer before the next command, so this runs a unit test. */
const program = path.join(build, 'tests/tst_nestedcommands/tst_nestedcommands');
const callsFile = '/tmp/calls';

const options = {
    testupdate: '/from:manual',
    testdailyreport: '/from:lumstart',
    testuninstallreport: '/senduninstallinfo:true',
    testinstallreport: '/sendinstallinfo:true',
};

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ env: { ASSISTANT_TEST_IN_PRIVATE_ROOT: '1' } });
    root.bind(build, build);
    await root.writeFile(updaterPath, `#!/bin/sh\necho "$*" >> ${callsFile}\n`, { mode: 0o755 });
    await root.writeFile(configFile, '[update]\na=1\n');
    await root.writeFile(logFile, 'text');
    await root.writeFile(callsFile, '');
});

afterEach(async () => root.dispose());

function runInside(outer, commands) {
    const rows = commands.map(
        (inner) => `everyCommandIsAnsweredWhileAnotherWaits:${inner} in ${outer}`,
    );
    // The program does not wait for what it started; that ends with the root.
    const script = `"$@"; status=$?
        until [ "$(wc -l < ${callsFile})" -ge ${Object.keys(options).length} ]; do sleep 0.02; done
        exit $status`;
    return root.run(['bash', '-c', script, 'run', program, ...rows]);
}

test.each(['screenshots', 'openremoveurlcheck'])(
    'commands for log, configuration and updater run while %s waits',
    async (outer) => {
        const commands = ['clearlogfile', 'changeupdateconfig', ...Object.keys(options)];
        const end = await runInside(outer, commands);
        expect(end.stdout).toMatch(
            new RegExp(`^Totals: ${commands.length + 2} passed, 0 failed`, 'm'),
        );
        expect(end.status).toBe(0);
        expect(await root.exists(logFile)).toBe(false);
        // In any order: each launch is a separate process.
        const calls = (await root.readFile(callsFile)).split('\n').filter(Boolean);
        expect(calls.sort()).toEqual(Object.values(options).sort());
        expect(await root.readFile(configFile)).toMatch(/^a=1\n.*usagecollected=/ms);
    },
);
