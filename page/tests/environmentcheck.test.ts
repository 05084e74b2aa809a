import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { CheckFinding, Outcome } from '@/client';
import { patience, useCheckRun } from '@/views/environmentcheck/checkrun';
import {
    answers,
    findingLines,
    findingsText,
    requestOf,
    withFinding,
} from '@/views/environmentcheck/checks';

const request = { check: 'fonts', component: 'vyr', argument: '' };
const finding = (value: string, check = 'fonts', component = 'vyr') => ({
    check,
    component,
    value,
});

describe('a check', () => {
    it('is asked for by its own name', () => {
        expect(requestOf('fonts', 'vyr', 'ignored', ' a ')).toEqual({ ...request, argument: 'a' });
    });

    it('of one’s own needs a name', () => {
        expect(requestOf('other', 'tbl', '  ', '')).toBeNull();
        expect(requestOf('other', 'tbl', ' own-check ', '')).toEqual({
            check: 'own-check',
            component: 'tbl',
            argument: '',
        });
    });

    it('is answered by a finding for the same component only', () => {
        expect(answers(finding(''), request)).toBe(true);
        expect(answers(finding('', 'fonts', 'tbl'), request)).toBe(false);
    });
});

describe('findings', () => {
    it('take the place of earlier ones for the same', () => {
        expect(withFinding([finding('old'), finding('other', 'space')], finding('new'))).toEqual([
            finding('new'),
            finding('other', 'space'),
        ]);
    });

    it('are lines, without the empty ones at the end', () => {
        expect(findingLines(finding('a\r\n\r\nb\n \n'))).toEqual(['a', '', 'b']);
        expect(findingLines(finding(''))).toEqual([]);
    });

    it('are copied with what would not show named', () => {
        const text = findingsText([finding('x\u0007'), finding('', 'own')], (key) => key);
        expect(text).toContain('x⟨U+0007⟩');
        expect(text).toContain('– own ==\nenvironmentcheck.noAnswer');
    });
});

describe('a check under way', () => {
    beforeEach(() => void vi.useFakeTimers());
    afterEach(() => void vi.useRealTimers());

    function checkRun(outcome: Outcome<CheckFinding | null> = { kind: 'done', value: null }) {
        const startCheck = vi.fn(() => Promise.resolve(outcome));
        const received: CheckFinding[] = [];
        const run = useCheckRun({ startCheck }, (found) => {
            received.push(found);
            run.receive(found);
        });
        return { startCheck, received, run };
    }

    it('is not started twice, because the library would stand still', async () => {
        const { run, startCheck } = checkRun();
        await run.start(request);
        await run.start(request);
        expect(startCheck).toHaveBeenCalledTimes(1);
        expect(startCheck).toHaveBeenCalledWith('fonts', 'vyr', '');
    });

    it('ends with its finding and with no other', async () => {
        const { run } = checkRun();
        await run.start(request);
        expect(run.receive(finding('late', 'space'))).toBe(false);
        expect(run.running.value).toBe(true);
        expect(run.receive(finding('ok'))).toBe(true);
        expect(run.running.value).toBe(false);
    });

    it('may be answered before the library has said that it started', async () => {
        const { run } = checkRun();
        const started = run.start(request);
        expect(run.receive(finding('ok'))).toBe(true);
        await started;
        expect(run.running.value).toBe(false);
    });

    it('shows its sign after half a second, and lets go after a while', async () => {
        const { run } = checkRun();
        await run.start(request);
        vi.advanceTimersByTime(499);
        expect(run.slow.value).toBe(false);
        vi.advanceTimersByTime(1);
        expect([run.slow.value, run.long.value]).toEqual([true, false]);
        vi.advanceTimersByTime(patience);
        expect(run.long.value).toBe(true);
        run.giveUp();
        expect([run.running.value, run.slow.value, run.long.value]).toEqual([false, false, false]);
    });

    it('ends with the finding that its start has answered', async () => {
        const { run, received } = checkRun({ kind: 'done', value: finding('ok') });
        await run.start(request);
        expect(received).toEqual([finding('ok')]);
        expect(run.running.value).toBe(false);
    });

    it('that was refused says why and is over', async () => {
        const { run } = checkRun({ kind: 'failed' });
        await run.start(request);
        expect(run.refusal.value).toEqual({ kind: 'failed' });
        expect(run.running.value).toBe(false);
    });
});
