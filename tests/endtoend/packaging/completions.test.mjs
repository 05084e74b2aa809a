import fs from 'node:fs';
import path from 'node:path';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { commands } from '../helio/ctl/commandtable.mjs';
import { repository, suiteDirectory } from '../paths.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { canInstall } from './installedtree.mjs';

const completions = path.join(path.dirname(suiteDirectory), 'packaging/completions');
const files = ['assistantctl.bash', '_assistantctl', 'assistantctl.fish'];
const settings = '/home/user/.config/Orvane/Office.conf';
const program = '/suite/office/assistantctl';
const repair = [program, 'doctor', '--fix', '--yes', 'permissions.open'];

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true, env: { PATH: '/suite/office:/usr/bin:/bin' } });
    root.bind(completions, '/completions');
});

afterEach(async () => root.dispose());

function wordsOf(text, pattern) {
    return [...new Set(text.match(pattern))].sort();
}

async function longOptions(words, of = program) {
    const { stdout } = await root.run([of, ...words, '--help']);
    return wordsOf(stdout, /(?<=^ {2}(?:-\w, )?)--[a-z-]+/gm);
}

/** The options of assistantctl and of its words. */
async function allOptions() {
    const words = [[], ['doctor'], ['why'], ['why', 'open'], ['compare'], ['suite']];
    const helps = await Promise.all(words.map((some) => longOptions(some)));
    return [...new Set(helps.flat())].sort();
}

describe.runIf(canInstall)('man pages and completions', () => {
    test.each(['', 'zh_CN/'])(
        'the man pages in %sman1 have every option, and no others',
        async (language) => {
            const manual = (name) =>
                fs
                    .readFileSync(path.join(repository, `packaging/${language}${name}.1`), 'utf8')
                    .replaceAll('\\-', '-');
            const options = (name) => wordsOf(manual(name), /--[a-z][a-z-]*/g);
            expect(options('assistantctl')).toEqual(await allOptions());
            expect(options('helio-shell')).toEqual(
                await longOptions([], '/suite/office/helio-shell'),
            );
        },
    );

    test.each(files)('%s has every option and command, and no others', async (file) => {
        const text = fs.readFileSync(path.join(completions, file), 'utf8');
        const wanted = await allOptions();
        const options = file.endsWith('.fish')
            ? wordsOf(text, /(?<=^complete .* -l )[a-z-]+/gm).map((name) => `--${name}`)
            : wordsOf(text, /(?<![\w-])--[a-z][a-z-]*/g);
        expect(options).toEqual(wanted);
        const line = text.split('\n').find((one) => one.includes(commands[0]));
        const words = line.match(/\w+/g);
        const places = commands.map((command) => words.indexOf(command)).sort((a, b) => a - b);
        expect(places).toEqual(commands.map((_, index) => places[0] + index));
        expect(places[0]).toBeGreaterThan(0);
    });

    test('each shell can read its file', async () => {
        for (const [shell, file] of [
            [['bash', '-n'], 'assistantctl.bash'],
            [['zsh', '-n'], '_assistantctl'],
            [['fish', '--no-execute'], 'assistantctl.fish'],
        ]) {
            const { status, stderr } = await root.run([...shell, `/completions/${file}`]);
            expect({ file, status, stderr }).toEqual({ file, status: 0, stderr: '' });
        }
    });

    const inBash = `source /completions/assistantctl.bash
[[ $(complete -p assistantctl) == 'complete -F _assistantctl assistantctl' ]] || exit 1
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_assistantctl "$1" "\${@: -1}" "\${@: -2:1}"
printf '%s\\n' "\${COMPREPLY[@]}"`;

    async function completedByBash(...words) {
        const { stdout } = await root.run(['bash', '-c', inBash, 'bash', 'assistantctl', ...words]);
        return stdout.split('\n').filter(Boolean);
    }

    async function completedByFish(...words) {
        const line = ['assistantctl', ...words].join(' ');
        const script = 'source /completions/assistantctl.fish; complete -C $argv[1]';
        const { stdout } = await root.run(['fish', '--no-config', '-c', script, line]);
        return stdout
            .split('\n')
            .filter(Boolean)
            .map((word) => word.split('\t')[0]);
    }

    describe.each([
        ['bash', completedByBash],
        ['fish', completedByFish],
    ])('in %s', (_shell, completed) => {
        test('a first word is a command or a word of its own', async () => {
            const words = await completed('');
            expect(words.toSorted()).toEqual(
                [...commands, 'doctor', 'why', 'report', 'compare', 'suite'].sort(),
            );
            expect(await completed('mousePr')).toEqual(['mousePress']);
        });

        test('options are those of the program or of the doctor', async () => {
            expect((await completed('--')).toSorted()).toEqual(await longOptions([]));
            expect((await completed('doctor', '--')).toSorted()).toEqual(
                await longOptions(['doctor']),
            );
            expect(await completed('--page', 'c')).toEqual(['child']);
        });

        test('the checks are those of this machine', async () => {
            await root.writeFile(
                '/home/user/.config/office-assistant/checks.d/own.json',
                JSON.stringify({
                    id: 'own.check',
                    title: 'Mine',
                    look: { file: '/x', exists: true },
                    finding: { text: 'There.' },
                }),
            );
            expect(await completed('doctor', 'own')).toEqual(['own.check']);
            expect(await completed('doctor', 'fix', 'permissions.o')).toEqual(['permissions.open']);
            expect(await completed('doctor', 'pl')).toEqual(['plan']);
            expect(await completed('doctor', 'hi')).toEqual(['history']);
        });

        test('why denied takes a path and an access', async () => {
            expect(await completed('why', 'd')).toEqual(['denied']);
            expect(await completed('why', 'denied', '--for', 'r')).toEqual(['read', 'run']);
            expect(await completed('why', 'denied', '/completions/assistantctl.f')).toEqual([
                '/completions/assistantctl.fish',
            ]);
            expect((await completed('why', 'denied', '--')).toSorted()).toEqual(
                await longOptions(['why']),
            );
        });

        test('why open takes a file and a desktop entry', async () => {
            expect(await completed('why', 'o')).toEqual(['open']);
            expect(await completed('why', 'open', '/completions/assistantctl.f')).toEqual([
                '/completions/assistantctl.fish',
            ]);
            expect((await completed('why', 'open', '--')).toSorted()).toEqual(
                await longOptions(['why', 'open']),
            );
        });

        test('compare takes reports', async () => {
            expect(await completed('compare', '/completions/assistantctl.f')).toEqual([
                '/completions/assistantctl.fish',
            ]);
            expect((await completed('compare', '--')).toSorted()).toEqual(
                await longOptions(['compare']),
            );
        });

        test('a repair to undo is one of the history', async () => {
            await root.writeFile(settings, '[Version]\n', { mode: 0o666 });
            expect((await root.run(repair)).status).toBe(0);
            expect(await completed('doctor', 'undo', '')).toEqual(['1']);
        });
    });
});
