import { describe, expect, it, vi } from 'vitest';
import type { FilePermissions } from '@/client';
import {
    byUrgency,
    judge,
    knownPath,
    rightsOf,
    standardPaths,
    userOf,
} from '@/views/permissions/judge';
import { listing } from '@/views/permissions/listing';
import { listText, rightsText } from '@/views/permissions/report';
import { described } from './browser/scenes/libreoffice.mjs';
import { scriptedClient } from './scriptedhost';

const file = (changes: Partial<FilePermissions> = {}): FilePermissions => ({
    name: 'Office.conf',
    exists: true,
    owner: 'user',
    group: 'user',
    permissions: '110-100-100',
    modified: '10:11:12',
    ...changes,
});
const t = (key: string, values: Record<string, unknown> = {}): string =>
    `${key}${Object.values(values).length ? JSON.stringify(values) : ''}`;

describe('a configuration file', () => {
    it.each([
        ['of one’s own', file(), 'good', 'good', []],
        [
            'of someone else',
            file({ owner: 'root' }),
            'foreign',
            'bad',
            ['sudo chown "$(id -un):$(id -gn)" ~/.config/Orvane/Office.conf'],
        ],
        [
            'of someone else that everyone may write',
            file({ owner: 'root', permissions: '110-110-110' }),
            'foreignOpen',
            'warning',
            ['sudo chown "$(id -un):$(id -gn)" ~/.config/Orvane/Office.conf'],
        ],
        [
            'of a user that is gone',
            file({ owner: '' }),
            'nameless',
            'bad',
            ['sudo chown "$(id -un):$(id -gn)" ~/.config/Orvane/Office.conf'],
        ],
        [
            'of a user that is gone that everyone may write',
            file({ owner: '', permissions: '110-110-110' }),
            'namelessOpen',
            'warning',
            ['sudo chown "$(id -un):$(id -gn)" ~/.config/Orvane/Office.conf'],
        ],
        [
            'that may not be written',
            file({ permissions: '100-100-100' }),
            'readOnly',
            'bad',
            ['chmod u+w ~/.config/Orvane/Office.conf'],
        ],
        [
            'that may not be read',
            file({ permissions: '010-000-000' }),
            'unreadable',
            'bad',
            ['chmod u+rw ~/.config/Orvane/Office.conf'],
        ],
        [
            'that everyone may write',
            file({ permissions: '110-110-110' }),
            'open',
            'warning',
            ['chmod o-w ~/.config/Orvane/Office.conf'],
        ],
        ['that is not there', file({ exists: false, permissions: '' }), 'missing', 'plain', []],
        ['with strange digits', file({ permissions: 'rw-r--r--' }), 'unclear', 'plain', []],
    ] as const)('%s is judged so', (_name, entry, name, state, commands) => {
        expect(judge(entry, 'user')).toEqual({ name, state, commands });
    });

    it('that is a folder has to be open to its owner', () => {
        expect(judge(file({ name: 'Orvane', permissions: '110-000-000' }), 'user')).toEqual({
            name: 'closed',
            state: 'bad',
            commands: ['chmod u+x ~/.config/Orvane'],
        });
        expect(judge(file({ name: 'Orvane', owner: 'root' }), 'user').commands).toEqual([
            'sudo chown -R "$(id -un):$(id -gn)" ~/.config/Orvane',
        ]);
    });

    it('that was added has a command with a place for its path', () => {
        expect(
            judge(file({ name: 'my notes', permissions: '100-000-000' }), 'user').commands,
        ).toEqual(['chmod u+w FILE']);
    });

    it('is no more than described while nobody knows the user', () => {
        expect(judge(file(), null).name).toBe('unknownUser');
        expect(judge(file({ permissions: '100-100-100' }), null).name).toBe('readOnly');
        expect(judge(file({ owner: '' }), null).name).toBe('nameless');
    });

    it('is as the doctor has found it', () => {
        const home = '/home/user';
        const found = {
            findings: [
                {
                    number: 1,
                    check: 'permissions.closed',
                    state: 'bad' as const,
                    text: 'closed, says the doctor',
                    where: [{ path: `${home}/.config/Orvane`, line: 0, process: 0 }],
                    repairs: [],
                },
            ],
            skipped: false,
        };
        const strange = file({ owner: 'root', permissions: '000-000-000' });
        expect(judge({ ...strange, name: 'Orvane' }, 'user', found)).toEqual({
            name: 'closed',
            state: 'bad',
            text: 'closed, says the doctor',
            commands: ['chmod u+x ~/.config/Orvane'],
        });
        expect(judge(strange, 'user', found).name).toBe('good');
        expect(judge(strange, 'user', { findings: [], skipped: true }).name).toBe('root');
        expect(judge({ ...strange, name: 'added' }, 'user', found).name).toBe('foreign');
    });

    it('is never a problem of the administrator', () => {
        expect(judge(file({ permissions: '000-000-000' }), 'root').name).toBe('root');
    });

    it('named as a part of every object is not taken for a known one', () => {
        expect(knownPath('constructor')).toBeNull();
        expect(knownPath('__proto__')).toBeNull();
    });
});

describe('permissions', () => {
    it('are read by digits', () => {
        expect(rightsOf('110-100-001')).toEqual({
            owner: { read: true, write: true, execute: false },
            group: { read: true, write: false, execute: false },
            others: { read: false, write: false, execute: true },
        });
        expect(rightsOf('')).toBeNull();
    });

    it('are given in words', () => {
        expect(rightsText('100-000-001', t)).toContain('permissions.rights.nothing');
        expect(rightsText('?', t)).toBe('');
    });
});

describe('the list', () => {
    it('has what needs a fix first', () => {
        const files = [
            file({ name: 'a' }),
            file({ name: 'b', owner: 'root' }),
            file({ name: 'c' }),
            file({ name: 'd', permissions: '110-110-110' }),
        ];
        expect(byUrgency(files, 'user').map(({ name }) => name)).toEqual(['b', 'd', 'a', 'c']);
    });
});

describe('the user', () => {
    it('is told by USER, else by LOGNAME', () => {
        expect(
            userOf([
                { name: 'LOGNAME', value: 'b' },
                { name: 'USER', value: 'a' },
            ]),
        ).toBe('a');
        expect(
            userOf([
                { name: 'LOGNAME', value: 'b' },
                { name: 'USER', value: '' },
            ]),
        ).toBe('b');
        expect(userOf([])).toBeNull();
    });
});

describe('the copied list', () => {
    it('names what would not show and leaves out facts of what is not there', () => {
        const text = listText(
            [file({ name: 'a\u202Eb' }), file({ exists: false, permissions: '' })],
            'user',
            t,
        );
        expect(text).toContain('a⟨U+202E⟩b  user:user  110-100-100  10:11:12');
        expect(text).toContain('\nOffice.conf\n');
    });
});

describe('a path of which all is known', () => {
    const whole = file({
        name: "it's mine.conf",
        path: "/home/u/a b/it's mine.conf",
        kind: 'file',
        mode: '0644',
        changed: new Date(0),
    });

    it('is named in commands as a shell needs it', () => {
        expect(judge({ ...whole, permissions: '100-100-100' }, 'user').commands).toEqual([
            `chmod u+w '/home/u/a b/it'\\''s mine.conf'`,
        ]);
    });

    it('is not taken for one of the suite’s of the same name', () => {
        const other = { ...whole, name: 'Orvane', path: '/tmp/Orvane' };
        expect(judge(other, 'user', { findings: [], skipped: true }).name).toBe('good');
    });

    it('stands in the list with its blanks, its rights and its day', () => {
        const day = (date: Date): string => date.toISOString();
        expect(listText([whole], 'user', t, null, new Map(), day)).toContain(
            "/home/u/a b/it's mine.conf  user:user  -rw-r--r-- (0644)  1970-01-01T00:00:00.000Z",
        );
    });

    it('is read by the shell, and what was added stays', async () => {
        const kept = new Map<string, string>();
        vi.stubGlobal('sessionStorage', {
            getItem: (key: string) => kept.get(key) ?? null,
            setItem: (key: string, value: string) => kept.set(key, value),
        });
        const { client, sent } = scriptedClient(
            {
                'task.choose': { result: { end: 'done', file: '/tmp/a b' } },
                'task.paths': {
                    result: {
                        end: 'done',
                        paths: [
                            { path: '/tmp/a b', exists: true, mode: '0640', kind: 'file' },
                            { path: '~/gone', exists: false },
                        ],
                    },
                },
            },
            ['task.paths'],
        );
        const { add, read } = listing(client);
        expect(await add()).toEqual({ kind: 'done', value: true });
        expect(await add()).toEqual({ kind: 'done', value: false });
        const outcome = await read();
        expect(outcome.kind === 'done' && outcome.value[0]).toMatchObject({
            name: 'a b',
            permissions: '110-100-000',
        });
        expect(sent[2]!.args!.paths).toEqual([
            '~/.config/Orvane/Office.conf',
            '~/.config',
            '~/.config/Orvane',
            '/tmp/a b',
        ]);
        vi.unstubAllGlobals();
    });

    it('begins with the settings of another suite, and misses none of this one’s', async () => {
        const profile = '/home/user/.config/libreoffice/4/user';
        const exists = ['registrymodifications.xcu', '.config'];
        const paths = [profile, `${profile}/registrymodifications.xcu`, ...standardPaths];
        const { client, sent } = scriptedClient(
            {
                'suite.describe': {
                    result: { ...described, profile: { ...described.profile, path: profile } },
                },
                'task.paths': {
                    result: {
                        end: 'done',
                        paths: paths.map((path) => ({
                            path,
                            exists: exists.some((name) => path.endsWith(`/${name}`)),
                            mode: '0600',
                            kind: 'file',
                        })),
                    },
                },
            },
            ['task.paths', 'suite.describe'],
        );
        const outcome = await listing(client).read();
        expect(sent[1]!.args!.paths).toEqual(paths);
        const names = outcome.kind === 'done' && outcome.value.map(({ name }) => name);
        expect(names).toEqual(['user', 'registrymodifications.xcu', '.config']);
    });
});
