import fs from 'node:fs';
import path from 'node:path';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { beside, displayAndBus } from '../beside.mjs';
import { repository } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { faults } from './brokenmachine.mjs';

const toolPath = '/suite/office/vyrEnvCheckTool';
const workDirectory = '/home/user/.local/share/Orvane/tmp';
const answers = `${workDirectory}/vyrEnv.ini`;
const endCallback = 'returnvyrenvcheck';

/** The checks that the page offers. */
const offered = fs
    .readFileSync(path.join(repository, 'page/src/views/environmentcheck/checks.ts'), 'utf8')
    .match(/export const checks = \[(.*?)\]/s)[1]
    .match(/\w+/g);

const server = '/server/node';
const sessionScript = `${displayAndBus}
ibus-daemon --panel disable --xim &
await dbus-send --session --dest=org.freedesktop.DBus --print-reply /org/freedesktop/DBus \
    org.freedesktop.DBus.GetNameOwner string:org.freedesktop.IBus
export QT_IM_MODULE=ibus XMODIFIERS=@im=ibus
${server} /tmp/printservice.mjs 6310 &
await bash -c 'exec 3<> /dev/tcp/127.0.0.1/6310'
export CUPS_SERVER=127.0.0.1:6310
`;
/** Accepts connections at these addresses and never answers. */
const silentScript = `
rm -f /tmp/.X11-unix/X9 /tmp/silentbus
${server} -e 'for (const place of ["/tmp/.X11-unix/X9", "/tmp/silentbus"])
    require("net").createServer(() => {}).listen(place);
require("net").createServer(() => {}).listen(6310, "127.0.0.1");' &
await test -S /tmp/silentbus
await bash -c 'exec 3<> /dev/tcp/127.0.0.1/6310'
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const tool = (args, options) => root.run([toolPath, ...args], options);
const decoded = (base64) => Buffer.from(base64, 'base64').toString();

/** What the page shows for a check. */
async function shown(type, options = {}) {
    const end = await runCommand(
        root,
        'vyrenvcheck',
        { type, app: 'vyr' },
        { page: 'child', until: endCallback, ...options },
    );
    const { result } = end.events.find(({ type: kind }) => kind === 'callback');
    expect(result).toMatchObject({ cmd: type, app: 'vyr' });
    return decoded(result.value);
}

async function withServers(script) {
    root.bind(fs.realpathSync(process.execPath), server);
    await root.makeDirectory('/tmp/.X11-unix');
    await root.writeFile(
        '/tmp/printservice.mjs',
        fs.readFileSync(path.join(repository, 'tests/endtoend/programs/printservice.mjs')),
    );
    return beside(root, script);
}

describe('the command line', () => {
    test('lists the checks that the page offers', async () => {
        expect(offered).toHaveLength(10);
        expect((await tool(['--list'])).stdout.trim().split('\n')).toEqual(offered);
    });

    test('explains every check and its argument', async () => {
        const end = await tool(['--help']);
        expect(end.status).toBe(0);
        for (const check of offered) {
            expect(end.stdout).toMatch(new RegExp(`^  ${check} .*; ARG: .`, 'm'));
        }
    });

    test.each([
        ['nothing', []],
        ['one word', ['fonts']],
        ['an option', ['--lost']],
        ['four words', ['fonts', 'vyr', 'a', 'b']],
        ['print alone', ['print']],
        ['print without a document', ['print', 'vyr']],
        ['print with an empty document', ['print', 'vyr', '']],
        ['print for another program', ['print', 'emacs', '/home/user/a.docx']],
    ])('refuses %s with a message', async (_, args) => {
        const end = await tool(args);
        expect(end).toMatchObject({ status: 2, stdout: '' });
        expect(end.stderr).toMatch(/^vyrEnvCheckTool: .+\n$/);
        expect(await root.exists(workDirectory)).toBe(false);
    });

    test('takes words that look like options for a check when a page sends them', async () => {
        for (const type of ['--help', '--list', '-x']) {
            expect((await tool([type, 'vyr', ''])).stdout).toContain(`no check named “${type}”`);
        }
    });
});

describe('each check', () => {
    test.each(offered)('%s prints what it found and keeps it', async (check) => {
        const end = await tool([check, 'vyr', '']);
        expect(end).toMatchObject({ status: 0, stderr: '' });
        const lines = end.stdout.trimEnd().split('\n');
        expect(lines.length).toBeGreaterThan(1);
        for (const line of lines) expect(line).toMatch(/^[✔⚠✘] \S.*[.”]$/u);
        const kept = await root.readFile(answers);
        expect(kept).toMatch(new RegExp(`^\\[vyrEnv\\]\\nvyr-${check}=`));
        expect(await root.list(workDirectory)).toEqual(['vyrEnv.ini']);
    });

    test('is kept beside the others', async () => {
        for (const check of offered) await tool([check, check === 'fonts' ? 'shw' : 'tbl', '']);
        const keys = (await root.readFile(answers)).match(/^\w+-\w+(?==)/gm);
        expect(keys).toHaveLength(10);
        expect(keys).toContain('shw-fonts');
    });

    test('changes nothing but its answer and the font cache', async () => {
        for (const check of offered) await tool([check, 'vyr', '']);
        const left = await root.run(['find', '/home/user', '/tmp', '-type', 'f']);
        const files = left.stdout
            .trim()
            .split('\n')
            .filter((file) => !/fontconfig/.test(file));
        expect(files).toEqual([answers]);
    });
});

describe('finds, and tells the page,', () => {
    test.each(faults)('$name', async ({ check, damage, env, line }) => {
        await root.makeDirectory(workDirectory);
        await damage?.(root);
        const value = await shown(check, { env });
        expect(value.split('\n').filter((each) => each.startsWith(line))).toHaveLength(1);
        expect(value).toMatch(/^✘ (One problem was|\d+ problems were) found\.\n/);
        // The free space of the home directory varies.
        if (check !== 'space') {
            expect((await tool([check, 'vyr', ''], { env })).stdout).toBe(`${value}\n`);
        }
    });
});

test('display, bus, input method and printers that work are no problem', async () => {
    const session = await withServers(sessionScript);
    const { stdout } = await session.run([
        'bash',
        '-c',
        `for check in display dbus input printing; do ${toolPath} $check vyr ''; done`,
    ]);
    expect(stdout).toMatch(/✔ Windows can be opened \(xcb\); the screens are \d+×\d+/);
    expect(stdout).toMatch(/✔ The session bus at unix:path=\/tmp\/bus answers/);
    expect(stdout).toMatch(/✔ The input method's program ibus-daemon runs/);
    expect(stdout).toMatch(/✔ The input-method module .*ibus.* can be loaded/);
    expect(stdout).toMatch(/✔ The default printer is office\./);
    expect(stdout).toMatch(/✔ The printer office is ready/);
    expect(stdout.match(/^✘ .*/gm)).toEqual([
        '✘ One problem was found.',
        expect.stringContaining('✘ The printer hall is stopped (media-empty-error).'),
    ]);
});

test('display, bus and printing service that never answer end the check all the same', async () => {
    const silent = await withServers(silentScript);
    const env = {
        DISPLAY: ':9',
        DBUS_SESSION_BUS_ADDRESS: 'unix:path=/tmp/silentbus',
        CUPS_SERVER: '127.0.0.1:6310',
    };
    const { stdout } = await silent.run(
        [
            'bash',
            '-c',
            `
        for check in display dbus printing; do ${toolPath} $check vyr '' & checks+=($!); done
        wait "\${checks[@]}"`,
        ],
        { env },
    );
    expect(stdout).toMatch(/✘ No window can be opened on DISPLAY=:9: there was no answer within 8/);
    expect(stdout).toMatch(/✘ The session bus at .* does not answer: there was no answer within 8/);
    expect(stdout).toMatch(/✘ The printing service \(CUPS\) /);
});

test('findings come in the language of the session', async () => {
    const env = { LANG: 'zh_CN.UTF-8' };
    expect((await shown('dbus', { env })).split('\n')[0]).toBe('✘ 发现一个问题。');
    expect((await tool(['space', 'vyr', ''], { env })).stdout).toMatch(
        /（\/tmp）剩余 [\d.]+ [GT]iB。/,
    );
    expect((await shown('dbus', { env: { LANG: 'fr_FR.UTF-8' } })).split('\n')[0]).toBe(
        '✘ One problem was found.',
    );
});

test('a full disk of the suite is reported and keeps the earlier answer', async () => {
    root.smallDisk('/home/user/.local/share/Orvane', 64 * 1024);
    const end = await root.run([
        'bash',
        '-c',
        `cd ~/.local/share/Orvane && mkdir tmp
printf '[vyrEnv]\\nvyr-space=earlier\\n' > tmp/vyrEnv.ini
cat /dev/zero > fill 2> /dev/null
${toolPath} space vyr ''
echo "status $?"
cat tmp/vyrEnv.ini`,
    ]);
    expect(end.stdout).toMatch(/✘ The suite's directory .* is nearly full: 0 bytes are free/);
    expect(end.stderr).toMatch(/^vyrEnvCheckTool: cannot write /);
    expect(end.stdout).toMatch(/status 1\n\[vyrEnv\]\nvyr-space=earlier\n$/);
});

test('an answer directory that cannot be written is an error and no crash', async () => {
    await root.makeDirectory(workDirectory);
    fs.chmodSync(root.hostPath(workDirectory), 0o555);
    const end = await tool(['fonts', 'vyr', '']);
    expect(end.status).toBe(1);
    expect(end.stderr).toBe(`vyrEnvCheckTool: cannot write into ${workDirectory}\n`);
});

test('many checks at once all keep their answers', async () => {
    const ends = await Promise.all(offered.map((check) => tool([check, 'vyr', ''])));
    expect(ends.map(({ status }) => status)).toEqual(offered.map(() => 0));
    expect((await root.readFile(answers)).match(/^vyr-\w+(?==)/gm).sort()).toEqual(
        offered.map((check) => `vyr-${check}`).sort(),
    );
});

test('the settings of the stand-alone shell say where the suite’s directory is', async () => {
    await root.writeFile('/suite/office/helio.ini', 'suiteHome=/home/user/elsewhere\n');
    await tool(['dbus', 'vyr', '']);
    expect(await root.exists('/home/user/elsewhere/tmp/vyrEnv.ini')).toBe(true);
    expect(await shown('dbus')).toMatch(/has no bus/);
});
