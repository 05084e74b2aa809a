import { describe, expect, it } from 'vitest';
import { keyObjection, valueObjection } from '@/views/updater/configuration';
import { logLines, matchingLines } from '@/views/updater/log';
import { startTestRun, testRuns } from '@/views/updater/testruns';
import { scriptedClient } from './scriptedhost';

describe('a setting of the updater', () => {
    it('may hold anything but the sign that parts key and value', () => {
        expect(valueObjection('a', '', false)).toBeNull();
        expect(valueObjection('a', 'a=b;c/d\\e 文', false)).toBeNull();
        expect(valueObjection('a', 'a$', false)).toBe('dollar');
        expect(valueObjection('a', 'a$', true)).toBeNull();
    });

    it.each([
        ['timeout', '1', null],
        ['timeout', '60', null],
        ['timeout', '0', 'number'],
        ['timeout', '61', 'number'],
        ['timeout', '2.5', 'number'],
        ['timeout', '1e1', 'number'],
        ['timeout', '', 'number'],
        ['enabled', 'false', null],
        ['enabled', 'no', 'truth'],
        ['toString', 'x', null],
    ])('%s = %j meets %s', (key, value, objection) => {
        expect(valueObjection(key, value, true)).toBe(objection);
    });

    it.each([
        ['  ', 'emptyKey'],
        ['a$b', 'dollar'],
        ['group/key', 'slash'],
        ['group\\key', 'slash'],
        [' channel ', 'known'],
        ['Channel', null],
    ])('of the new key %j meets %s', (key, objection) => {
        expect(keyObjection(key, ['channel'])).toBe(objection);
    });
});

describe('the log', () => {
    it('is told in lines whatever ends them', () => {
        expect(logLines('a\r\nb\n\nc\n').map(({ text }) => text)).toEqual(['a', 'b', '', 'c']);
        expect(logLines('')).toEqual([]);
        expect(logLines('a\tb')[0]!.text).toBe('a    b');
    });

    it('is searched by words, with the lines keeping their numbers', () => {
        const lines = logLines('one error\ntwo\nERROR three');
        expect(matchingLines(lines, 'error').map(({ number }) => number)).toEqual([1, 3]);
        expect(matchingLines(lines, 'error three').map(({ number }) => number)).toEqual([3]);
        expect(matchingLines(lines, ' ')).toBe(lines);
    });
});

describe('a test run', () => {
    it('starts with its command', async () => {
        const { client, sent } = scriptedClient({});
        for (const run of testRuns) await startTestRun(client, run);
        expect(sent.map(({ command }) => command)).toEqual([
            'testupdate',
            'testdailyreport',
            'testinstallreport',
            'testuninstallreport',
        ]);
    });

    it('of the installation report has started although it sets no result', async () => {
        const { client } = scriptedClient({ testinstallreport: {}, testuninstallreport: {} });
        expect(await startTestRun(client, 'install')).toEqual({ kind: 'done', value: undefined });
        expect(await startTestRun(client, 'uninstall')).toEqual({ kind: 'unanswered' });
    });
});
