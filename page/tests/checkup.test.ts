import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { Envelope } from '@/client/wire';
import chinese from '@/locales/zh-CN.json';
import english from '@/locales/en.json';
import { useCheckup, type Patience } from '@/views/home/checkup/checkup';
import {
    diagnoseAssociations, diagnoseDumps, diagnoseInputMethod, diagnoseMemory,
    diagnosePermissions, diagnoseShortcuts, diagnoseUpdater,
} from '@/views/home/checkup/diagnoses';
import { findingId, stepNames, type StepResult } from '@/views/home/checkup/finding';
import { ignoredKey, parseIgnored, withIgnored, withoutIgnored }
    from '@/views/home/checkup/ignored';
import { scriptedClient } from './scriptedhost';

const row = (extension: string, good: boolean) => ({ extension, value: 'x', good });
const associations = (...rows: ReturnType<typeof row>[]) =>
    ({ writer: rows, presentation: [], spreadsheet: [] });
const shortcuts = (files: string[], integrated = false) => ({
    files, integrated, mode: '',
    supported: { chartBoard: false, docket: false, fixedComponent: false },
});
const separate = ['vyr-office-vyr.desktop', 'vyr-office-tbl.desktop', 'vyr-office-shw.desktop'];
const kinds = ({ findings }: StepResult): string[] => findings.map(({ kind }) => kind);
const file = (owner: string, permissions: string) =>
    ({ name: 'Orvane', exists: permissions !== '', owner, group: '', permissions, modified: '' });

/** One result of every kind of finding that the diagnoses can make. */
const allResults = [
    ...['ERR_OTHER', 'ERR_LOADPLUGIN_FAILED', 'ERR_NOT_RUNNING', 'ERR_NOT_FIND_BUSCONFIG',
        'ERR_INVALID_ENV_CONFIG', '输入法', 'ERR_OK'].map(diagnoseInputMethod),
    diagnoseAssociations(associations(row('.doc', false)), associations(row('.doc', false))),
    diagnoseAssociations(associations(), associations()),
    diagnoseShortcuts(shortcuts([])),
    diagnoseShortcuts(shortcuts([...separate, 'vyr-office-tessaly.desktop'])),
    diagnoseShortcuts(shortcuts(['Folder'])),
    diagnoseDumps({ enabled: false, dumpAvailable: true }),
    diagnoseUpdater(false, null),
    diagnoseUpdater(true, null),
    diagnoseUpdater(true, {}),
    ...['111-000-000', '101-000-000', '011-000-000', '110-000-000', '111-000-111']
        .map((digits) => diagnosePermissions([file('user', digits)], 'user')),
    ...['111-000-000', '111-000-111'].map((digits) =>
        diagnosePermissions([file('root', digits)], 'user')),
    diagnosePermissions([file('', '111-000-000')], 'user'),
    diagnosePermissions([], 'root'),
    ...[null, 10, 85, 95].map((usedPercent) =>
        diagnoseMemory({ usedPercent, totalGibibytes: 8 })),
];

describe('every finding', () => {
    const found = allResults.flatMap(({ findings }) => findings);

    it('has its sentence in both languages', () => {
        expect(new Set(found.map(({ kind }) => kind)))
            .toEqual(new Set(Object.keys(english.home.checkup.findings)));
        expect(Object.keys(chinese.home.checkup.findings))
            .toEqual(Object.keys(english.home.checkup.findings));
    });

    it('that is repaired at once has words for the repair and for what it brought', () => {
        for (const { kind, repair } of found) {
            if (!repair) continue;
            expect(english.home.checkup.kinds).toHaveProperty(kind);
            expect(english.home.checkup.repairs).toHaveProperty(repair);
        }
    });

    it('has a note for the time when it is gone', () => {
        for (const { note: { key } } of allResults) {
            expect(english.home.checkup.notes).toHaveProperty(key);
        }
    });
});

describe('file associations', () => {
    it('are told by extension, the same again by the same name', () => {
        const result = diagnoseAssociations(
            associations(row('.doc', false), row('.docx', true)), associations(row('.doc', true)));
        expect(kinds(result)).toEqual(['otherApplication']);
        expect(result.findings[0]!.values).toEqual({ bad: 1, count: 2, names: '.doc' });
        expect(findingId(result.findings[0]!)).toBe('associations:otherApplication:.doc');
    });

    it('are not listed in full when they are many', () => {
        const many = Array.from({ length: 9 }, (_, index) => row(`.${index}`, false));
        expect(diagnoseAssociations(associations(...many), associations()).findings[0]!.values)
            .toEqual({ bad: 9, count: 9, names: '.0 .1 .2 .3 .4 .5 …' });
    });

    it('without sample documents are no problem', () => {
        expect(diagnoseAssociations(associations(), associations()).findings).toEqual([]);
    });
});

describe('desktop shortcuts', () => {
    it('in place are none to mend', () => {
        expect(diagnoseShortcuts(shortcuts(separate)).findings).toEqual([]);
        expect(diagnoseShortcuts(shortcuts(['vyr-office-tessaly.desktop'], true)).findings)
            .toEqual([]);
    });

    it('are restored as the component mode wants them', () => {
        expect(diagnoseShortcuts(shortcuts([])).findings[0]!.repair).toBe('restoreSeparate');
        expect(diagnoseShortcuts(shortcuts(separate, true)).findings[0]!.repair)
            .toBe('restoreIntegrated');
    });

    it('that are all gone may be so on purpose', () => {
        expect(diagnoseShortcuts(shortcuts([])).findings[0]!.state).toBe('plain');
        expect(diagnoseShortcuts(shortcuts(separate.slice(1))).findings[0]!.state).toBe('warning');
    });

    it('are not judged when a folder is listed in their place', () => {
        expect(kinds(diagnoseShortcuts(shortcuts(['My Desktop'])))).toEqual([]);
    });
});

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

describe('the check-up', () => {
    const stored = new Map<string, string>();
    beforeEach(() => {
        vi.useFakeTimers();
        stored.clear();
        vi.stubGlobal('localStorage', {
            getItem: (key: string) => stored.get(key) ?? null,
            setItem: (key: string, value: string) => stored.set(key, value),
        });
    });
    afterEach(() => {
        vi.useRealTimers();
        vi.unstubAllGlobals();
    });

    const patience: Patience = { step: 1000, looks: 3, between: 100 };
    const table = (good: boolean) =>
        ({ result: [{ '.doc': `x|${good}` }, {}, {}] });
    const well: Record<string, Envelope | Error> = {
        inputcheck: { result: 'ERR_OK' },
        getassoopen: table(true),
        getassomime: table(true),
        getdesktopiconfile: { result: { icon: separate.join('|'), mode: '', chartboard: false,
            docket: false, fixedcomponent: false } },
        getDumpState: { result: { enable: true, feedback: false } },
        getupdatesupport: { result: true },
        getupdateconfig: { result: { a: 'b' } },
        stratextractfileinfo: { result: { Orvane: 'user|user|111-101-101|10:00:00' } },
        stratcheckenv: { result: { sysinfo: '', vyrinfo: '', officeinfo: '', browserinfo: '',
            fontinfo: '', cpuInfo: '', envInfo: 'USER=user' } },
        getcomputermemory: { result: { percentage: '40', all: '8' } },
        fileassorepair: { result: 'success' },
    };

    function checkup(changes: Record<string, Envelope | Error> = {}) {
        const answers = { ...well, ...changes };
        const { client, sent } = scriptedClient(answers);
        return { ...useCheckup(client, patience), answers, sent };
    }

    it('finds nothing where all is well', async () => {
        const { run, findings, steps, finishedAt } = checkup();
        await run();
        expect(findings.value).toEqual([]);
        expect([...steps.values()].map(({ state }) => state)).toEqual(stepNames.map(() => 'done'));
        expect(finishedAt.value).not.toBeNull();
    });

    it('goes on after a failure, and says which', async () => {
        const { run, steps } = checkup({ getDumpState: {}, getcomputermemory: new Error('gone') });
        await run();
        expect(steps.get('crash')).toEqual({ state: 'failed', failure: { kind: 'unanswered' } });
        expect(steps.get('memory')).toEqual(
            { state: 'failed', failure: { kind: 'refused', reason: 'gone' } });
        expect(steps.get('permissions')?.state).toBe('done');
    });

    it('does not wait for ever', async () => {
        const { client } = scriptedClient(well);
        const { run, steps, running } = useCheckup(
            { ...client, dumpState: () => new Promise(() => undefined) }, patience);
        const ended = run();
        await vi.advanceTimersByTimeAsync(999);
        expect(steps.get('crash')?.state).toBe('running');
        await vi.advanceTimersByTimeAsync(1);
        await ended;
        expect(steps.get('crash')?.state).toBe('tooLate');
        expect(running.value).toBe(false);
    });

    it('is not started twice', async () => {
        const { run, sent } = checkup();
        await Promise.all([run(), run()]);
        expect(sent.filter(({ command }) => command === 'inputcheck')).toHaveLength(1);
    });

    it('does without the name of the user when the snapshot fails', async () => {
        const { run, steps } = checkup({ stratcheckenv: { result: 'error' } });
        await run();
        expect(steps.get('permissions')?.state).toBe('done');
    });

    it('takes an unreadable configuration of the updater for a finding', async () => {
        const { run, findings } = checkup({ getupdateconfig: { result: 'error' } });
        await run();
        expect(findings.value.map(({ kind }) => kind)).toEqual(['updaterUnreadable']);
    });

    it('remembers what is ignored, for as long as the same is found', async () => {
        const { run, findings, ignoredFindings, ignore, noticeAgain } =
            checkup({ getassoopen: table(false) });
        await run();
        ignore(findings.value[0]!);
        expect([findings.value.length, ignoredFindings.value.length]).toEqual([0, 1]);
        await vi.advanceTimersByTimeAsync(0);
        expect(stored.get(ignoredKey)).toBe('["associations:otherApplication:.doc"]');

        const later = checkup({ getassoopen: { result: [{ '.rtf': 'x|false' }, {}, {}] } });
        await later.run();
        expect(later.findings.value).toHaveLength(1);

        noticeAgain(ignoredFindings.value[0]!);
        expect(findings.value).toHaveLength(1);
    });

    it('looks again after a repair until it has settled', async () => {
        const { run, findings, repair, repaired, answers, sent } =
            checkup({ getassoopen: table(false) });
        await run();
        const ended = repair(findings.value[0]!, 'repairAssociations');
        await vi.advanceTimersByTimeAsync(150);
        expect(repaired.get('otherApplication')).toBe('running');
        answers.getassoopen = table(true);
        await vi.advanceTimersByTimeAsync(100);
        await ended;
        expect(repaired.get('otherApplication')).toBe('repaired');
        expect(findings.value).toEqual([]);
        expect(sent.filter(({ command }) => command === 'fileassorepair')).toHaveLength(1);
    });

    it('says so when a repair changes nothing', async () => {
        const { run, findings, repair, repaired } = checkup({ getassoopen: table(false) });
        await run();
        const ended = repair(findings.value[0]!, 'repairAssociations');
        await vi.advanceTimersByTimeAsync(1000);
        await ended;
        expect(repaired.get('otherApplication')).toBe('unchanged');
    });

    it('says so when a repair is refused', async () => {
        const { run, findings, repair, repaired } =
            checkup({ getassoopen: table(false), fileassorepair: new Error('closing') });
        await run();
        await repair(findings.value[0]!, 'repairAssociations');
        expect(repaired.get('otherApplication')).toEqual({ kind: 'refused', reason: 'closing' });
    });

    it('repairs one thing at a time', async () => {
        const { run, findings, repair, sent } = checkup({ getassoopen: table(false) });
        await run();
        void repair(findings.value[0]!, 'repairAssociations');
        await repair(findings.value[0]!, 'repairAssociations');
        expect(sent.filter(({ command }) => command === 'fileassorepair')).toHaveLength(1);
    });

    it('no longer calls repaired what has come back', async () => {
        const { run, runAgain, findings, repair, repaired, answers } =
            checkup({ getassoopen: table(false) });
        await run();
        answers.getassoopen = table(true);
        const ended = repair(findings.value[0]!, 'repairAssociations');
        await vi.advanceTimersByTimeAsync(200);
        await ended;
        answers.getassoopen = table(false);
        await runAgain('associations');
        expect(repaired.has('otherApplication')).toBe(false);
    });

    it('makes no single diagnosis before the check-up was made', async () => {
        const { runAgain, sent } = checkup();
        await runAgain('memory');
        expect(sent).toEqual([]);
    });
});
