import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const schema = fileURLToPath(new URL('../../../docs/doctor.schema.json', import.meta.url));
const validator = `
import json, jsonschema, sys
check = jsonschema.Draft202012Validator(json.load(open(sys.argv[1])))
for event in json.load(sys.stdin):
    check.validate(event)
`;
const profile = '/home/user/.profile';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

/** Runs a line of bash that the session's variables are set for. */
async function inSession(line) {
    const session = ['XMODIFIERS=@im=fcitx', 'LANG=zh_CN.UTF-8', 'LANGUAGE=en', 'DISPLAY=:77'];
    const { status, stdout } = await root.run(['env', ...session, 'bash', '-c', line]);
    return { status, stdout };
}

const asked = `cp /bin/sleep /tmp/ibus-daemon
/tmp/ibus-daemon 60 & daemon=$!
sleep 60 &
until [[ $(< /proc/$daemon/comm) == ibus-daemon && $(< /proc/$!/comm) == sleep ]]; do :; done
/suite/office/assistantctl why input --json`;
const ending = `$!; status=$?; kill %1 %2; exit $status`;

test('the line behind a wrong variable is named, changed and restored', async () => {
    const before = '# mine\nexport XMODIFIERS=@im=fcitx\n';
    await root.writeFile(profile, before);
    const { status, stdout } = await inSession(`${asked} --fix --yes ${ending}`);
    const events = stdout.trimEnd().split('\n').map(JSON.parse);
    expect(events.map((event) => event.type)).toEqual(['why', 'change', 'repair']);
    expect(status).toBe(0);
    expect(events[0]).toMatchObject({
        question: 'input',
        verdict: 'cause',
        cause: 'other-running',
        variable: 'XMODIFIERS',
        wanted: '@im=ibus',
        display: 'x11',
        frameworks: [{ name: 'ibus' }],
        needs: 'user',
    });
    const variable = events[0].variables.find((one) => one.name === 'XMODIFIERS');
    expect(variable).toEqual({
        name: 'XMODIFIERS',
        value: '@im=fcitx',
        path: profile,
        line: 2,
        decided: true,
        origin: 'line',
        places: [{ path: profile, line: 2 }],
    });
    execFileSync('/usr/bin/python3', ['-c', validator, schema], {
        input: JSON.stringify(events),
        encoding: 'utf8',
    });
    expect(await root.readFile(profile)).toBe(before.replace('@im=fcitx', '@im=ibus'));
    expect((await root.run(['/suite/office/assistantctl', 'doctor', 'undo'])).status).toBe(0);
    expect(await root.readFile(profile)).toBe(before);
});

test('a process without an input method is well, one that is gone is undecided', async () => {
    const well = await root.run(['bash', '-c', '/suite/office/assistantctl why input $$']);
    expect(well).toMatchObject({ status: 0 });
    const gone = await root.run(['/suite/office/assistantctl', 'why', 'input', '4194304']);
    expect(gone).toMatchObject({
        status: 3,
        stdout: 'There is no process 4194304, or it has just ended.\n',
    });
    const wrong = await root.run(['/suite/office/assistantctl', 'why', 'input', 'first']);
    expect(wrong.status).toBe(2);
});
