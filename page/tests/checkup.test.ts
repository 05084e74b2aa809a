import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { Envelope } from '@/client/wire';
import { useCheckup, type Patience } from '@/views/home/checkup/checkup';
import { stepNames } from '@/views/home/checkup/finding';
import {
    ignoredKey,
    parseIgnored,
    withIgnored,
    withoutIgnored,
} from '@/views/home/checkup/ignored';
import { scriptedClient } from './scriptedhost';

const separate = ['vyr-office-vyr.desktop', 'vyr-office-tbl.desktop', 'vyr-office-shw.desktop'];

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
    const table = (good: boolean) => ({ result: [{ '.doc': `x|${good}` }, {}, {}] });
    const icons = (files: string[]): Envelope => ({
        result: {
            icon: files.join('|'),
            mode: '',
            chartboard: false,
            docket: false,
            fixedcomponent: false,
        },
    });
    const well: Record<string, Envelope | Error> = {
        inputcheck: { result: 'ERR_OK' },
        getassoopen: table(true),
        getassomime: table(true),
        getdesktopiconfile: icons(separate),
        getDumpState: { result: { enable: true, feedback: false } },
        getupdatesupport: { result: true },
        getupdateconfig: { result: { a: 'b' } },
        stratextractfileinfo: { result: { Orvane: 'user|user|111-101-101|10:00:00' } },
        stratcheckenv: {
            result: {
                sysinfo: '',
                vyrinfo: '',
                officeinfo: '',
                browserinfo: '',
                fontinfo: '',
                cpuInfo: '',
                envInfo: 'USER=user',
            },
        },
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
        expect(steps.get('memory')).toEqual({
            state: 'failed',
            failure: { kind: 'refused', reason: 'gone' },
        });
        expect(steps.get('permissions')?.state).toBe('done');
    });

    it('does not wait for ever', async () => {
        const { client } = scriptedClient(well);
        const { run, steps, running } = useCheckup(
            { ...client, dumpState: () => new Promise(() => undefined) },
            patience,
        );
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
        const { run, findings, ignoredFindings, ignore, noticeAgain } = checkup({
            getassoopen: table(false),
        });
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
        const { run, findings, repair, repaired, answers, sent } = checkup({
            getassoopen: table(false),
        });
        await run();
        const ended = repair(findings.value[0]!, 'repairAssociations');
        await vi.advanceTimersByTimeAsync(150);
        expect(repaired.get('otherApplication')).toBe('running');
        answers.getassoopen = table(true);
        await vi.advanceTimersByTimeAsync(50);
        expect(repaired.get('otherApplication')).toBe('running');
        await vi.advanceTimersByTimeAsync(100);
        await ended;
        expect(repaired.get('otherApplication')).toBe('repaired');
        expect(findings.value).toEqual([]);
        expect(sent.filter(({ command }) => command === 'fileassorepair')).toHaveLength(1);
    });

    it('does not call repaired what has only made room for another fault', async () => {
        const { run, findings, repair, repaired, answers } = checkup({
            getdesktopiconfile: icons([...separate, 'vyr-office-tessaly.desktop']),
            fixfouricon: { result: 'success' },
        });
        await run();
        const ended = repair(findings.value[0]!, 'restoreSeparate');
        answers.getdesktopiconfile = icons([]);
        await vi.advanceTimersByTimeAsync(1000);
        await ended;
        expect(repaired.get('shortcutsWrong')).toBe('unchanged');
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
        const { run, findings, repair, repaired } = checkup({
            getassoopen: table(false),
            fileassorepair: new Error('closing'),
        });
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
        const { run, runAgain, findings, repair, repaired, answers } = checkup({
            getassoopen: table(false),
        });
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
