import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { staging } from './faults.mjs';

const outputSize = 50 * 1024 * 1024;
const endless = (line) => `#!/bin/bash\nyes '${line}' | head -c ${outputSize}\n`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

async function answerOf(command) {
    const end = await runCommand(root, command, {}, { timeoutMs: 120_000 });
    expect(end).toMatchObject({ status: 0, stderr: '' });
    return end.answer;
}

test.each([
    ['getassomime', 'getmimeinfo.sh'],
    ['getassoopen', 'getopeninfo.sh'],
])('%s takes fifty megabytes of findings', async (command, script) => {
    await root.writeFile(`${staging}/${script}`, endless('vyr|.docx|application/x|true'));
    expect((await answerOf(command)).result).toEqual([{ '.docx': 'application/x|true' }, {}, {}]);
});

test('fifty megabytes of one line are no finding', async () => {
    await root.writeFile(
        `${staging}/getmimeinfo.sh`,
        `#!/bin/bash\nhead -c ${outputSize} /dev/zero | tr '\\0' '|'\n`,
    );
    expect((await answerOf('getassomime')).result).toEqual([{}, {}, {}]);
});

test('fifty megabytes of fonts are in the snapshot', async () => {
    await root.fake('fc-list', endless('A Font of Some Name'));
    const { fontinfo } = (await answerOf('stratcheckenv')).result;
    expect(fontinfo.length).toBeGreaterThan(outputSize * 0.9);
});

test('fifty megabytes from free and top are figures and ten lines', async () => {
    await root.fake('free', endless('7 7'));
    await root.fake('top', endless('1 user 20 0 1 1 1 S 2.0 3.0 0:00 name'));
    expect(Object.keys((await answerOf('getcomputermemory')).result).sort()).toEqual([
        'all',
        'percentage',
    ]);
    expect(Object.keys((await answerOf('getcpuinfo')).result[0])).toHaveLength(10);
});
