import fs from 'node:fs';
import path from 'node:path';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';

import { commands } from '../helio/ctl/commandtable.mjs';
import { installEntries } from '../desktop/suiteentries.mjs';
import { repository } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile, installUpdater, logFile } from '../update/updater.mjs';
import { steps } from './steps.mjs';

const workDirectory = '/home/user/.local/share/Orvane/tmp';
const office = '/suite/office';
const longestRun = 600_000;

const recorder = (name) => `#!/bin/bash
printf '%s\\0' "$#" "$@" >> /fakecalls/${name}
`;
/** Fake suite programs: each writes the files that the real one would. */
const programs = {
    vyr: `#!/bin/bash\nprintf '[vyrtool]\\nMissFonts=Arial\\n' > ${workDirectory}/vyrmissfonts.ini\n`,
    vyrEnvCheckTool: `#!/bin/bash
if [ "$1" = print ]; then
    echo '%PDF-1.7' > ${workDirectory}/report.pdf
else
    printf '[vyrEnv]\\n%s-%s=ok\\n' "$2" "$1" > ${workDirectory}/vyrEnv.ini
fi
`,
    eptools: recorder('eptools'),
    'addons/vyrassistanttool/screencap/screencap': recorder('screencap'),
};

let root;
let run;
let outcomes;

async function installSuite() {
    for (const [name, script] of Object.entries(programs)) {
        await root.run(['rm', '-f', `${office}/${name}`]);
        await root.writeFile(`${office}/${name}`, script, { mode: 0o755 });
    }
    await installEntries(root);
    await installUpdater(root);
    await root.writeFile(configFile, '[update]\nchannel=beta\n');
    await root.writeFile(logFile, 'checked\n');
}

async function fillHome() {
    await root.writeFile('/home/user/report.docx', 'a document');
    await root.writeFile('/home/user/.config/Orvane/Office.conf', '[6.0]\nlook=dark\n');
    for (const name of ['Desktop', '.local/share/mime/packages', '.local/share/Orvane/tmp/dump']) {
        await root.makeDirectory(`/home/user/${name}`);
    }
    await root.recordingFake('xdg-open');
    await root.recordingFake('quickstartoffice');
}

beforeAll(async () => {
    root = await SandboxRoot.create({
        suite: true,
        env: { DBUS_SESSION_BUS_ADDRESS: 'disabled:' },
    });
    await installSuite();
    await fillHome();
    root.bind(fs.realpathSync(process.execPath), '/repository/node');
    for (const name of ['node_modules', 'tests/browser', 'tests/endtoend']) {
        root.bind(path.join(repository, name), `/repository/${name}`);
    }
    run = await root.run(
        [
            '/repository/node',
            '/repository/tests/endtoend/bridge/insidesandbox.mjs',
            JSON.stringify(steps),
        ],
        { timeoutMs: longestRun },
    );
    outcomes = new Map(
        run.stdout
            .split('\n')
            .filter(Boolean)
            .map((line) => JSON.parse(line))
            .map((outcome) => [outcome.command, outcome]),
    );
}, longestRun);

afterAll(async () => root.dispose());

test('every command is sent once', () => {
    expect(steps.map(({ command }) => command).sort()).toEqual([...commands].sort());
    expect(commands).toHaveLength(57);
});

test('no script of a page reports an error', () => {
    expect(run.stderr).not.toMatch(/^js: /m);
});

describe('a page of the window reaches', () => {
    test.each(steps)('$command', ({ command, answer, callback, ends }) => {
        const outcome = outcomes.get(command);
        expect(outcome?.error, run.stderr).toBeUndefined();
        if (ends) {
            expect(outcome.end).toMatchObject({ status: 0, signal: null });
            return;
        }
        if (answer.holds) {
            expect(answer.holds(outcome.envelope.result), JSON.stringify(outcome)).toBe(true);
        } else {
            expect(outcome.envelope).toEqual(answer);
        }
        if (callback) {
            expect(outcome.told).toContainEqual({ callback: callback.name, ...callback.told });
        }
        if (callback?.before) expect(outcome.told).toContainEqual(callback.before);
    });
});
