import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { useCheckup } from '@/views/home/checkup/checkup';
import { diffLines, rightsText } from '@/changes/difflines';
import { findingId, grouped, viewOf } from '@/views/home/checkup/groups';
import {
    ignoredKey,
    parseIgnored,
    withIgnored,
    withoutIgnored,
} from '@/views/home/checkup/ignored';
import { useFixAll } from '@/views/home/checkup/fixall';
import { useRepairs } from '@/views/home/checkup/repairs';
import { doctorOperationNames } from '@/client/wire/host';
import { verdictOf, type Seen } from '@/views/home/checkup/verdict';
import { scriptedClient, type Answer } from '../scriptedhost';

describe('ignored findings', () => {
    it.each([null, '', '{', '{}', '"a"', 'null'])('are none when %j is stored', (stored) => {
        expect(parseIgnored(stored)).toEqual([]);
    });

    it('are read back, and nothing else is', () => {
        expect(parseIgnored('["a",1,null,"b"]')).toEqual(['a', 'b']);
    });

    it('are each kept once, and can be noticed again', () => {
        expect(withIgnored(['a', 'b'], 'a')).toEqual(['b', 'a']);
        expect(withoutIgnored(['a', 'b'], 'a')).toEqual(['b']);
    });
});

describe('a diff', () => {
    it('is shown without the names of the file', () => {
        expect(diffLines('--- /a\n+++ /a\n@@ -12,3 +12,3 @@\n same\n-old\n+new\n')).toEqual([
            { kind: 'place', text: '12' },
            { kind: 'same', text: ' same' },
            { kind: 'removed', text: '-old' },
            { kind: 'added', text: '+new' },
        ]);
    });

    it('keeps changed lines that look like those names', () => {
        expect(diffLines('--- /a\n+++ /a\n@@ -1 +1 @@\n--- b\n+++ c\n').slice(1)).toEqual([
            { kind: 'removed', text: '--- b' },
            { kind: 'added', text: '+++ c' },
        ]);
    });

    it('of a new file has its lines only', () => {
        expect(diffLines('--- /dev/null\n+++ /a\n@@ -0,0 +1 @@\n+new\n')).toEqual([
            { kind: 'added', text: '+new' },
        ]);
    });

    it('may be one sentence', () => {
        expect(diffLines('Binary files differ\n')).toEqual([
            { kind: 'same', text: 'Binary files differ' },
        ]);
    });

    it.each([
        ['0640', 'rw-r-----'],
        ['4755', 'rwxr-xr-x'],
        ['0000', '---------'],
    ])('has the permissions %s as %s', (mode, rights) => {
        expect(rightsText(mode)).toBe(rights);
    });
});

const settings = '/home/user/Office.conf';
const line = (finding: number, check: string, state: string, more: object = {}) => ({
    type: 'finding',
    finding,
    check,
    state,
    text: `finding ${finding}`,
    where: [{ path: settings, line: finding }],
    repairs: ['mend'],
    ...more,
});
const ended = (check: string, result = 'finding', reason = '') => ({
    type: 'check',
    check,
    result,
    reason,
});
const listed = ['memory.full', 'own', 'settings.a', 'settings.b'].map((check) => ({
    check,
    title: `title of ${check}`,
    repairTitles: { mend: 'Mend' },
}));
const summary = { result: { type: 'summary' } };

describe('the check-up', () => {
    const stored = new Map<string, string>();
    beforeEach(() => {
        stored.clear();
        vi.stubGlobal('localStorage', {
            getItem: (key: string) => stored.get(key) ?? null,
            setItem: (key: string, value: string) => stored.set(key, value),
        });
    });
    afterEach(() => vi.unstubAllGlobals());

    function checkup(changes: Record<string, Answer> = {}) {
        const answers: Record<string, Answer> = {
            'doctor.list': { result: { checks: listed, mistakes: [] } },
            'doctor.look': {
                ...summary,
                lines: [
                    ended('settings.a'),
                    line(1, 'settings.a', 'warning'),
                    line(2, 'settings.a', 'warning'),
                    ended('memory.full'),
                    line(3, 'memory.full', 'bad', { where: [], repairs: [] }),
                    ended('own', 'failed', 'given up'),
                    ended('settings.b', 'skipped', 'not installed'),
                ],
            },
            'doctor.plan': {
                result: {
                    plan: 7,
                    changes: [{ kind: 'write', path: settings, diff: '-a\n+b\n', command: '' }],
                    refusal: '',
                },
            },
            'doctor.fix': { result: { result: 'repaired', journal: 4, reason: '' } },
            'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
            'doctor.history': { result: { entries: [] } },
            ...changes,
        };
        const { client, sent } = scriptedClient(answers, doctorOperationNames);
        const state = useCheckup(client, () => 'en');
        const repairs = useRepairs(client, () => 'en', state);
        const fixAll = useFixAll(client, () => 'en', state, repairs);
        return { ...state, repairs, fixAll, answers, sent, client };
    }

    it('is offered by a shell that has the operations, and by no other', () => {
        expect(checkup().client.doctor.isOffered).toBe(true);
        expect(scriptedClient({}).client.doctor.isOffered).toBe(false);
    });

    it('shows findings of one check as one, the worst first', async () => {
        const { run, groups, finishedAt } = checkup();
        await run();
        expect(groups.value.map(({ check, findings }) => [check, findings.length])).toEqual([
            ['memory.full', 1],
            ['settings.a', 2],
        ]);
        expect(finishedAt.value).not.toBeNull();
    });

    it('says of each check how it has ended', async () => {
        const { run, results } = checkup();
        await run();
        expect(results.get('own')).toEqual({ check: 'own', result: 'failed', reason: 'given up' });
        expect(results.get('settings.b')).toMatchObject({ result: 'skipped' });
    });

    it('shows findings while the look is under way', async () => {
        let end: (envelope: object) => void = () => undefined;
        const { run, groups, running, client } = checkup();
        vi.spyOn(client.doctor, 'lookAtAll').mockImplementation((_language, listener) => {
            listener.check({ check: 'own', result: 'finding', reason: '' });
            listener.finding({
                number: 1,
                check: 'own',
                state: 'bad',
                text: 'seen',
                where: [],
                repairs: [],
            });
            return new Promise((resolve) => {
                end = () => resolve({ kind: 'done', value: null });
            });
        });
        const over = run();
        await vi.waitFor(() => expect(groups.value).toHaveLength(1));
        expect(running.value).toBe(true);
        end({});
        await over;
        expect(running.value).toBe(false);
    });

    it('leaves out a line that it cannot read', async () => {
        const warn = vi.spyOn(console, 'warn').mockImplementation(() => undefined);
        const { run, groups } = checkup({
            'doctor.look': {
                ...summary,
                lines: [{ type: 'finding' }, { type: 'new' }, line(1, 'own', 'note')],
            },
        });
        await run();
        expect(groups.value).toHaveLength(1);
        expect(warn).toHaveBeenCalledTimes(1);
        warn.mockRestore();
    });

    it('says why it could not be made', async () => {
        const { run, failure, finishedAt } = checkup({ 'doctor.list': new Error('closing') });
        await run();
        expect(failure.value).toEqual({ kind: 'refused', reason: 'closing' });
        expect(finishedAt.value).not.toBeNull();
    });

    it('is not started twice', async () => {
        const { run, sent } = checkup();
        await Promise.all([run(), run()]);
        expect(sent.filter(({ command }) => command === 'doctor.look')).toHaveLength(1);
    });

    it('runs only the checks of one subject again', async () => {
        const { run, runAgain, sent } = checkup();
        await runAgain('settings.a');
        expect(sent).toEqual([]);
        await run();
        await runAgain('settings.a');
        expect(sent.at(-1)!.args).toEqual({ language: 'en', checks: ['settings.a', 'settings.b'] });
    });

    it('remembers what is ignored by check and place', async () => {
        const { run, groups, ignoredGroups, ignore, noticeAgain } = checkup();
        await run();
        ignore(groups.value[1]!);
        expect([groups.value.length, ignoredGroups.value.length]).toEqual([1, 1]);
        await Promise.resolve();
        expect(stored.get(ignoredKey)).toBe(`["settings.a ${settings}"]`);

        const later = checkup({
            'doctor.look': {
                ...summary,
                lines: [line(1, 'settings.a', 'bad', { where: [{ path: '/other' }] })],
            },
        });
        await later.run();
        expect(later.groups.value).toHaveLength(1);

        noticeAgain(ignoredGroups.value[0]!);
        expect(groups.value).toHaveLength(2);
    });

    it('repairs what its plan has shown, and checks the subject again', async () => {
        const { run, groups, repairs, answers, sent } = checkup();
        await run();
        await repairs.prepare(groups.value[1]!, 'mend');
        expect(sent.at(-1)).toEqual({
            command: 'doctor.plan',
            args: { findings: [1, 2], repair: 'mend' },
        });
        expect(repairs.shown.value?.plan).toMatchObject({ number: 7, refusal: '' });
        answers['doctor.look'] = { ...summary, lines: [ended('settings.a', 'ok')] };
        await repairs.fix();
        expect(sent.find(({ command }) => command === 'doctor.fix')!.args).toEqual({
            language: 'en',
            plan: 7,
        });
        expect(repairs.outcomes.get('settings.a')).toEqual({
            repair: 'mend',
            outcome: { result: 'repaired', journal: 4, reason: '' },
        });
        expect(groups.value.map(({ check }) => check)).toEqual(['memory.full']);
        expect(repairs.shown.value).toBeNull();
    });

    it('makes no repair without a plan', async () => {
        const { run, groups, repairs, sent } = checkup({ 'doctor.plan': new Error('look again') });
        await run();
        await repairs.fix();
        await repairs.prepare(groups.value[1]!, 'mend');
        expect(repairs.shown.value?.plan).toEqual({ kind: 'refused', reason: 'look again' });
        await repairs.fix();
        expect(sent.some(({ command }) => command === 'doctor.fix')).toBe(false);
    });

    it('plans all fixes on each other, and makes them after one confirmation', async () => {
        const lines = [
            ended('settings.a'),
            line(1, 'settings.a', 'bad'),
            ended('settings.b'),
            line(2, 'settings.b', 'bad'),
            ended('memory.full'),
            line(3, 'memory.full', 'bad', { repairs: [] }),
        ];
        const { run, repairs, fixAll, answers, sent } = checkup({
            'doctor.look': { ...summary, lines },
        });
        await run();
        await fixAll.prepare();
        const plans = sent.filter(({ command }) => command === 'doctor.plan');
        expect(plans.map(({ args }) => args)).toEqual([
            { findings: [1], repair: 'mend', after: [] },
            { findings: [2], repair: 'mend', after: [7] },
        ]);
        expect(fixAll.whole.value?.left.map(({ check }) => check)).toEqual(['memory.full']);
        expect(sent.some(({ command }) => command === 'doctor.fix')).toBe(false);

        answers['doctor.look'] = { ...summary, lines: [] };
        await fixAll.fix();
        expect(sent.filter(({ command }) => command === 'doctor.fix')).toHaveLength(2);
        expect([...repairs.outcomes.keys()]).toEqual(['settings.a', 'settings.b']);
        expect(fixAll.whole.value).toBeNull();
    });

    it('leaves out of all fixes what the administrator has to do', async () => {
        const { run, fixAll } = checkup({
            'doctor.plan': {
                result: {
                    plan: 7,
                    changes: [{ kind: 'command', path: '', diff: '', command: 'sudo true' }],
                    refusal: '',
                },
            },
        });
        await run();
        await fixAll.prepare();
        expect(fixAll.whole.value?.steps).toEqual([]);
        expect(fixAll.whole.value?.left).toHaveLength(2);
    });

    it('does one thing at a time', async () => {
        const { run, groups, repairs, sent } = checkup();
        await run();
        await Promise.all([
            repairs.prepare(groups.value[1]!, 'mend'),
            repairs.prepare(groups.value[1]!, 'mend'),
        ]);
        expect(sent.filter(({ command }) => command === 'doctor.plan')).toHaveLength(1);
    });

    it('takes a repair back, and shows the history with the latest first', async () => {
        const entry = (journal: number) => ({
            journal,
            time: '2026-03-01T08:30:00Z',
            check: 'settings.a',
            repair: 'mend',
            state: 'applied',
            paths: [settings],
        });
        const { run, repairs, sent } = checkup({
            'doctor.history': { result: { entries: [entry(1), entry(2)] } },
            'doctor.undo': { result: { result: 'conflict', reason: 'changed', kept: [settings] } },
        });
        await run();
        await repairs.readHistory();
        expect(repairs.entries.value.map(({ journal }) => journal)).toEqual([2, 1]);
        await repairs.undo(repairs.entries.value[0]!);
        expect(sent.find(({ command }) => command === 'doctor.undo')!.args).toEqual({ journal: 2 });
        expect(repairs.undoing.value?.outcome).toEqual({
            result: 'conflict',
            reason: 'changed',
            kept: [settings],
        });
    });

    it('passes on what an interrupted repair had left, once', async () => {
        const note = { type: 'note', text: 'Repair 3 was taken back.' };
        const { run, notes, repairs } = checkup({
            'doctor.look': { ...summary, lines: [note] },
            'doctor.history': { result: { entries: [] }, lines: [note] },
        });
        await run();
        await repairs.readHistory();
        expect(notes.value).toEqual(['Repair 3 was taken back.']);
    });
});

describe('the verdict', () => {
    const seen: Seen = {
        running: false,
        stopped: false,
        isMissing: false,
        groups: [],
        ignored: 0,
        isPartial: false,
        isOld: false,
    };
    const group = (state: 'bad' | 'note') => ({
        key: 'a',
        check: 'a',
        state,
        findings: [],
        repairs: [],
    });
    it.each<[string, Partial<Seen>, string]>([
        ['well', {}, 'good'],
        ['well', { isOld: true }, 'plain'],
        ['onlyIgnored', { ignored: 1 }, 'good'],
        ['partial', { isPartial: true }, 'warning'],
        ['missing', { isMissing: true }, 'warning'],
        ['stopped', { stopped: true }, 'plain'],
        ['stopped', { stopped: true, groups: [group('bad')] }, 'bad'],
        ['running', { running: true, groups: [group('bad')] }, 'plain'],
        ['found', { groups: [group('bad'), group('note')], isPartial: true }, 'bad'],
        ['found', { groups: [group('note')] }, 'plain'],
    ])('is “%s” for %j, marked %s', (sentence, changes, mark) => {
        expect(verdictOf({ ...seen, ...changes })).toEqual({ sentence, mark });
    });
});

describe('findings', () => {
    const finding = (repairs: string[], where: { path: string; line: number; process: number }[]) =>
        ({ number: 1, check: 'a.b', state: 'bad', text: '', where, repairs }) as const;

    it('that different repairs fit have rows of their own', () => {
        expect(grouped([finding(['file'], []), finding(['folder'], [])])).toHaveLength(2);
    });

    it('are the same when only line or process differ', () => {
        const at = (line: number, process: number) =>
            findingId(finding([], [{ path: '/a', line, process }]));
        expect(at(1, 0)).toBe(at(2, 7));
        expect(findingId(finding([], [{ path: '', line: 0, process: 7 }]))).toBe('a.b');
    });

    it.each([
        ['input.ibus-not-running', 'inputmethod'],
        ['memory.full', 'processes'],
        ['crash.dumps-off', 'crash'],
        ['own', 'own'],
    ])('of %s are explained by the view %s', (check, view) => {
        expect(viewOf(check)).toBe(view);
    });
});
