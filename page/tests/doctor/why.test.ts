import { describe, expect, it } from 'vitest';
import type { FilePermissions } from '@/client';
import { doctorOperationNames } from '@/client/wire/host';
import { useUndoing } from '@/tasks/undoing';
import { useReasons } from '@/views/associations/reasons';
import { useAccesses } from '@/views/permissions/accesses';
import { judge } from '@/views/permissions/judge';
import { partRights, listText } from '@/views/permissions/report';
import {
    deniedReason,
    grantedReason,
    inputReason,
    openings,
    openReason,
    repairing,
} from '../browser/explaining.mjs';
import { scriptedClient, type Answer } from '../scriptedhost';

const language = (): string => 'zh-CN';
const offered = [...doctorOperationNames];

function explaining(answers: Record<string, Answer>, operations: readonly string[] = offered) {
    const { client, sent } = scriptedClient({ ...repairing, ...answers }, operations);
    const undoing = useUndoing(client);
    return {
        client,
        undoing,
        reasons: useReasons(client, language, undoing),
        accesses: useAccesses(client, language, undoing),
        sent,
        commands: () => sent.map(({ command }) => command),
    };
}

const file: FilePermissions = {
    name: 'Orvane',
    exists: true,
    owner: 'root',
    group: 'root',
    permissions: '110-000-000',
    modified: '10:11:12',
};
const t = (key: string): string => key;

describe('why a document type opens as it does', () => {
    it('is asked by its suffix, in the page’s language', async () => {
        const { reasons, sent } = explaining({ 'why.open': openReason });
        await reasons.toggle('.doc');
        expect(sent[1]).toEqual({
            command: 'why.open',
            args: { language: 'zh-CN', suffix: 'doc' },
        });
        expect(reasons.shown.value).toMatchObject({
            extension: '.doc',
            reason: {
                verdict: 'not-as-said',
                patterns: [{ pattern: '*.doc', where: { line: 12 } }],
                statements: [{ entry: 'lost.desktop', decides: false }, { decides: true }],
                tools: { 'xdg-mime': null, KDE: { entry: 'other.desktop' } },
            },
        });
        await reasons.toggle('.doc');
        expect(reasons.shown.value).toBeNull();
    });

    it('is listed for all types with the line that decides', async () => {
        const { reasons } = explaining({ 'why.open': openings });
        await reasons.look();
        expect(reasons.openingOf('.doc')?.choice).toMatchObject({
            entry: 'other.desktop',
            where: { line: 7 },
        });
        expect(reasons.openingOf('.xls')?.choice).toBeNull();
        expect(reasons.openingOf('.ppt')).toBeUndefined();
    });

    it('is not asked in a shell that does not explain', async () => {
        const { reasons, accesses, commands } = explaining({}, ['doctor.look']);
        expect(reasons.explains).toBe(false);
        await reasons.look();
        await accesses.look([file]);
        expect(commands()).toEqual([]);
    });

    it('is fixed as it was shown, and undone', async () => {
        const { reasons, undoing, sent } = explaining({ 'why.open': openReason });
        await reasons.toggle('.doc');
        const { reason } = reasons.shown.value!;
        const plan = reason && 'repair' in reason ? reason.repair! : null;
        expect(await reasons.fix(plan!)).toEqual({ kind: 'done', value: '' });
        expect(sent.at(-1)).toEqual({
            command: 'doctor.fix',
            args: { language: 'zh-CN', plan: 5 },
        });
        expect(undoing.made.value).toMatchObject({ journal: 9, changes: [{ kind: 'write' }] });
        await undoing.undo();
        expect(sent.at(-1)).toEqual({ command: 'doctor.undo', args: { journal: 9 } });
        expect(undoing.made.value).toBeNull();
    });

    it('has nothing to undo when its fix was taken back', async () => {
        const fix = { type: 'repair', result: 'unchanged', journal: 9, reason: 'overruled' };
        const { reasons, undoing } = explaining({ 'doctor.fix': { result: fix } });
        const plan = { number: 5, changes: [], refusal: '' };
        expect(await reasons.fix(plan)).toEqual({ kind: 'blocked', reason: 'overruled' });
        expect(undoing.made.value).toBeNull();
    });
});

describe('why a path is denied', () => {
    it('is asked for reading, then for writing', async () => {
        const { accesses, sent } = explaining({ 'why.denied': grantedReason });
        await accesses.look([file, { ...file, name: 'added' }, { ...file, exists: false }]);
        expect(sent.map(({ args }) => args)).toEqual([
            { language: 'zh-CN', path: '~/.config/Orvane', access: 'read' },
            { language: 'zh-CN', path: '~/.config/Orvane', access: 'write' },
        ]);
    });

    it('counts more than the three digits', async () => {
        const { accesses } = explaining({ 'why.denied': deniedReason });
        await accesses.look([file]);
        const reason = accesses.reasons.get('Orvane')!;
        expect(reason.chain.map(({ blocks }) => blocks)).toEqual([false, false, true]);
        expect(judge(file, 'root', null, reason)).toEqual({
            name: 'denied',
            state: 'bad',
            text: reason.text,
            commands: [],
        });
        expect(listText([file], 'root', t, null, accesses.reasons)).toContain(reason.text);
    });

    it('is a way of parts with their rights', async () => {
        const { client } = explaining({ 'why.denied': deniedReason });
        const outcome = await client.why.access('en', '~/x', 'read');
        const { chain } = outcome.kind === 'done' ? outcome.value : { chain: [] };
        expect(chain.map(partRights)).toEqual([
            'drwxr-xr-x (0755)',
            'lrwxrwxrwx (0777)',
            'drw------- (0600)',
        ]);
    });

    it('leaves what is granted fine, whoever owns it', async () => {
        const { accesses } = explaining({ 'why.denied': grantedReason });
        await accesses.look([file]);
        const reason = accesses.reasons.get('Orvane')!;
        const finding = {
            number: 1,
            check: 'permissions.foreign',
            state: 'bad' as const,
            text: 'belongs to root',
            where: [{ path: '/home/user/.config/Orvane', line: 0, process: 0 }],
            repairs: [],
        };
        const found = { findings: [finding], skipped: false };
        expect(judge(file, 'user', found, reason)).toMatchObject({
            name: 'granted',
            state: 'good',
        });
        const open = { ...finding, check: 'permissions.open', state: 'warning' as const };
        expect(judge(file, 'user', { ...found, findings: [open] }, reason).name).toBe('open');
        expect(judge(file, 'user', null, reason).name).toBe('good');
    });

    it('is not known where the doctor does not answer', async () => {
        const { accesses } = explaining({ 'why.denied': new Error('closing') });
        await accesses.look([file]);
        expect(accesses.reasons.size).toBe(0);
    });
});

describe('why input does not work', () => {
    it('names each variable’s lines', async () => {
        const { client } = explaining({ 'why.input': inputReason });
        const outcome = await client.why.input('en');
        expect(outcome).toMatchObject({
            kind: 'done',
            value: {
                verdict: 'cause',
                repair: { number: 7 },
                variables: [
                    { origin: 'line', places: [{ path: '/home/user/.profile', line: 2 }] },
                    { value: null, origin: 'unset' },
                    { origin: 'manager' },
                    { origin: 'undecided', places: [{ line: 0 }] },
                ],
            },
        });
    });
});
