import fs from 'node:fs';
import path from 'node:path';

import { afterAll, beforeAll, describe, expect, test } from 'vitest';

import { parseEvents, runAssistant } from '../assistantctl.mjs';
import { beside, besideLog } from '../beside.mjs';
import { repository } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile, installUpdater, logFile } from '../update/updater.mjs';

const document = fs.readFileSync(path.join(repository, 'docs/commands.md'), 'utf8');
const workDirectory = '/home/user/.local/share/Orvane/tmp';
const server = `
/server/node -e 'require("http").createServer((_, answer) => answer.end("a document"))
    .listen(8080, "127.0.0.1")' &
await bash -c 'exec 3<> /dev/tcp/127.0.0.1/8080'
`;

/** Fake suite programs: each writes the files that the real one would. */
const suitePrograms = {
    vyr: `printf '[vyrtool]\\nMissFonts=Arial\\n' > ${workDirectory}/vyrmissfonts.ini`,
    vyrEnvCheckTool: `mkdir -p ${workDirectory}
if [ "$1" = print ]; then
    echo '%PDF-1.7' > ${workDirectory}/report.pdf
else
    printf '[vyrEnv]\\n%s-%s=ok\\n' "$2" "$1" > ${workDirectory}/vyrEnv.ini
fi`,
};

/** The lines of the document's shell blocks, in its order. */
function printedLines() {
    const blocks = [...document.matchAll(/^```sh\n(.*?)^```$/gms)];
    return blocks.flatMap(([, block]) => block.split('\n').filter((line) => line !== ''));
}

/** The commands that the tables of commands list, in their order. */
function listedCommands() {
    const tables = [...document.matchAll(/^\| command \|.*\n\|[-|]+\n((?:\|.*\n)+)/gm)];
    return tables
        .flatMap(([, rows]) => [...rows.matchAll(/^\| `(\w+)` \|/gm)])
        .map(([, command]) => command);
}

const lines = printedLines();

let root;
let prepared;
let commands;

beforeAll(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.fake('assistantctl', '#!/bin/bash\nexec /suite/office/assistantctl "$@"\n');
    for (const [name, script] of Object.entries(suitePrograms)) {
        await root.run(['rm', '-f', `/suite/office/${name}`]);
        await root.writeFile(`/suite/office/${name}`, `#!/bin/bash\n${script}\n`, { mode: 0o755 });
    }
    await root.writeFile('/home/user/report.docx', 'a document');
    await installUpdater(root);
    await root.writeFile(configFile, '[update]\nchannel=beta\n');
    await root.writeFile(logFile, 'checked\n');
    root.bind(fs.realpathSync(process.execPath), '/server/node');
    prepared = await beside(root, server);
    commands = (await runAssistant(root, ['--commands'])).stdout.split('\n').slice(0, -1);
});

afterAll(async () => root.dispose());

test('every command is in a table, and nothing else is', () => {
    expect(commands).toHaveLength(57);
    expect(listedCommands().sort()).toEqual([...commands].sort());
});

test('the README says of every command, once, what does its work', () => {
    const readme = fs.readFileSync(path.join(repository, 'README.md'), 'utf8');
    const [, rows] = readme.match(/^\| commands \|.*\n\|[-|]+\n((?:\|.*\n)+)/m);
    const named = rows.split('\n').flatMap((row) => row.split('|')[1]?.match(/\w+/g) ?? []);
    expect(named.sort()).toEqual([...commands].sort());
});

test('every command has a line', () => {
    const words = new Set(lines.flatMap((line) => line.match(/\w+/g)));
    expect(commands.filter((command) => !words.has(command))).toEqual([]);
});

describe('works as printed:', () => {
    test.each(lines)('%s', async (line) => {
        const end = await prepared.run(['bash', '-c', `set -o pipefail; ${line}`]);
        expect(end.status, `${end.stdout}${end.stderr}${await besideLog(root)}`).toBe(0);
        if (line.includes('--pretty')) return;
        const events = parseEvents(end.stdout);
        expect(events.filter(({ type }) => type === 'error')).toEqual([]);
        const answers = events.filter(({ type }) => type === 'answer');
        expect(answers.length).toBeGreaterThan(0);
        expect(answers.filter(({ result }) => result === 'error')).toEqual([]);
    });
});
