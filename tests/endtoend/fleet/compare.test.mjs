import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { fileURLToPath } from 'node:url';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const docs = new URL('../../../docs/', import.meta.url);
const validator = `
import json, jsonschema, sys
check = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))
for event in json.load(sys.stdin):
    check.validate(event)
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true, env: { API_TOKEN: 'not for others' } });
});

afterEach(async () => root.dispose());

async function assistantctl(...args) {
    return root.run(['/suite/office/assistantctl', ...args]);
}

function validate(schema, events) {
    const path = fileURLToPath(new URL(schema, docs));
    const input = JSON.stringify(events);
    execFileSync('/usr/bin/python3', ['-c', validator, path], { input, encoding: 'utf8' });
}

async function report() {
    const { status, stdout } = await assistantctl('report');
    expect(status).toBe(0);
    return JSON.parse(stdout);
}

test('a report has the documented form and no secret', async () => {
    const made = await report();
    validate('report.schema.json', [made]);
    expect(made.facts.environment.API_TOKEN).toBe('(hidden)');
    expect(made.facts.system.architecture).not.toBe('');
});

test('two reports of one machine do not differ', async () => {
    await root.writeFile('/home/user/a.json', JSON.stringify(await report()));
    await root.writeFile('/home/user/b.json', JSON.stringify(await report()));
    const { status, stdout } = await assistantctl(
        'compare',
        '/home/user/a.json',
        '/home/user/b.json',
    );
    expect(stdout).toContain('Nothing differs.');
    expect(status).toBe(0);
});

test('a variable of another machine is found, with the reason why it may matter', async () => {
    const other = await report();
    other.host = 'elsewhere\n\u001b[31m';
    other.facts.environment.SAL_USE_VCLPLUGIN = 'gen';
    await root.writeFile('/home/user/other.json', JSON.stringify(other));
    const { status, stdout } = await assistantctl(
        'compare',
        '--json',
        '--here',
        '/home/user/other.json',
    );
    expect(status).toBe(1);
    const events = stdout.trimEnd().split('\n').map(JSON.parse);
    validate('doctor.schema.json', events);
    expect(events.filter(({ type }) => type === 'difference')).toMatchObject([
        {
            group: 'environment',
            names: ['SAL_USE_VCLPLUGIN'],
            weight: 'high',
            values: [null, 'gen'],
            deviating: [],
        },
    ]);
    const shown = await assistantctl('compare', '--here', '/home/user/other.json');
    expect(shown.stdout).toContain('This variable changes how programs load, draw or type.');
    expect(shown.stdout).not.toContain('\u001b');
});

test('a file that cannot be read is named', async () => {
    await root.writeFile('/home/user/good.json', JSON.stringify(await report()));
    await root.writeFile('/home/user/cut.json', '{"type":"report"');
    await root.run(['/usr/bin/mkfifo', '/home/user/pipe.json']);
    for (const name of ['cut.json', 'missing.json', 'pipe.json']) {
        const { status, stderr } = await assistantctl(
            'compare',
            '/home/user/good.json',
            `/home/user/${name}`,
        );
        expect(status).toBe(3);
        expect(stderr).toContain(`assistantctl compare: /home/user/${name}: `);
    }
    expect((await assistantctl('compare', '/home/user/good.json')).status).toBe(2);
});

test('the commands of the documentation compare as it says', async () => {
    const guide = fs.readFileSync(new URL('fleet.md', docs), 'utf8');
    const [, block] = guide.match(/^```sh\n(.*?)^```$/ms);
    await root.fake('assistantctl', '#!/bin/bash\nexec /suite/office/assistantctl "$@"\n');
    const { status, stdout } = await root.run(['bash', '-ec', `cd /home/user\n${block}`]);
    expect(status).toBe(0);
    const compared = 'A: sandbox, user user\nB: sandbox, user user\nNothing differs.\n';
    expect(stdout.replace(/, made .*/g, '')).toBe(compared.repeat(2));
});
