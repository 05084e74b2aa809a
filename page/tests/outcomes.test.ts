import { describe, expect, it, vi } from 'vitest';
import type { Client } from '@/client';
import type { Envelope } from '@/client/wire/host';
import { base64, scriptedClient } from './scriptedhost';

async function outcome(
    command: string,
    answer: Envelope | Error,
    operation: (client: Client) => Promise<unknown>,
) {
    return operation(scriptedClient({ [command]: answer }).client);
}

const exportReport = (answer: Envelope | Error) =>
    outcome('exportsysinfo', answer, (client) => client.exportReport());

describe('an answer', () => {
    it.each([
        ['success', { result: 'success' }, { kind: 'done', value: 'started' }],
        ['error', { result: 'error' }, { kind: 'failed' }],
        ['a wrong argument', { result: 'parame error' }, { kind: 'badRequest' }],
        ['a full disk', { result: 'success', incomplete: true }, { kind: 'incomplete' }],
        ['no result', {}, { kind: 'unanswered' }],
        [
            'another word',
            { result: 'maybe' },
            { kind: 'unreadable', reason: 'neither success nor error' },
        ],
        ['a refusal', new Error('unknown command'), { kind: 'refused', reason: 'unknown command' }],
    ])('is told apart: %s', async (_name, answer, expected) => {
        expect(await exportReport(answer)).toEqual(expected);
    });

    it('may be without a result where the command sets none', async () => {
        expect(
            await outcome('testinstallreport', {}, (client) => client.testInstallReport()),
        ).toEqual({ kind: 'done', value: undefined });
    });

    it('is unreadable when it is not base64', async () => {
        expect(
            await outcome('choosesamplefile', { result: '!' }, (client) => client.chooseSample()),
        ).toEqual({ kind: 'unreadable', reason: 'no base64 text' });
    });

    it('is decoded from base64 as UTF-8', async () => {
        expect(
            await outcome('choosesamplefile', { result: base64('/家/a.docx') }, (client) =>
                client.chooseSample(),
            ),
        ).toEqual({ kind: 'done', value: '/家/a.docx' });
    });

    it('keeps an empty update log', async () => {
        expect(await outcome('getlogfile', { result: '' }, (client) => client.updateLog())).toEqual(
            { kind: 'done', value: '' },
        );
    });
});

describe('the document server', () => {
    const test = (result: unknown) =>
        outcome('openremoveurlcheck', { result }, (client) =>
            client.testServer({ url: 'u', functionName: 'f', headers: [], fields: [] }),
        );

    it.each([
        ['success', { good: true }],
        [base64('404:not: found'), { good: false, status: 404, body: 'not: found' }],
        [base64('0:'), { good: false, status: 0, body: '' }],
    ])('answers %s', async (result, value) => {
        expect(await test(result)).toEqual({ kind: 'done', value });
    });
});

describe('tables', () => {
    it('of processes keep their numbered order and bear decimal commas', async () => {
        const result = [
            {
                10: '10 root 0.1 0.0 ten  ',
                2: '2 root 0,5 1,5 two words ',
                1: '  1 user 3.4 99.9 one  ',
                11: '',
            },
        ];
        expect(
            await outcome('getcpuinfo', { result }, (client) => client.busiestProcesses()),
        ).toEqual({
            kind: 'done',
            value: [
                { id: 1, user: 'user', memory: 3.4, processor: 99.9, command: 'one' },
                { id: 2, user: 'root', memory: 0.5, processor: 1.5, command: 'two words' },
                { id: 10, user: 'root', memory: 0.1, processor: 0, command: 'ten' },
            ],
        });
    });

    it('of associations correct the one misspelt entry and separate value and state', async () => {
        const result = [
            { '.docx': 'vyr-office-vyr.dekstop|true', '.rtf': '|false' },
            { '.pptx': 'vyr-office-shw.desktop|true' },
            {},
        ];
        expect(
            await outcome('getassoopen', { result }, (client) => client.defaultApplications()),
        ).toEqual({
            kind: 'done',
            value: {
                writer: [
                    { extension: '.docx', value: 'vyr-office-vyr.desktop', good: true },
                    { extension: '.rtf', value: '', good: false },
                ],
                presentation: [{ extension: '.pptx', value: 'vyr-office-shw.desktop', good: true }],
                spreadsheet: [],
            },
        });
    });

    it('of configuration files tell a missing one by its empty fields', async () => {
        const result = { 'Office.conf': '|||', '.config': 'user|staff|111-101-101|10:11:12' };
        expect(
            await outcome('stratextractfileinfo', { result }, (client) =>
                client.configurationFiles(),
            ),
        ).toEqual({
            kind: 'done',
            value: [
                {
                    name: 'Office.conf',
                    exists: false,
                    owner: '',
                    group: '',
                    permissions: '',
                    modified: '',
                },
                {
                    name: '.config',
                    exists: true,
                    owner: 'user',
                    group: 'staff',
                    permissions: '111-101-101',
                    modified: '10:11:12',
                },
            ],
        });
    });

    it('of memory say when the machine does not tell', async () => {
        expect(
            await outcome(
                'getcomputermemory',
                { result: { percentage: 'nan', all: '15.5' } },
                (client) => client.machineMemory(),
            ),
        ).toEqual({ kind: 'done', value: { usedPercent: null, totalGibibytes: 15.5 } });
    });

    it('of kept findings part check and component at the last hyphen', async () => {
        expect(
            await outcome(
                'getvyrenvcheckedresult',
                { result: { 'np-plugin-vyr': 'ok' } },
                (client) => client.keptFindings(),
            ),
        ).toEqual({ kind: 'done', value: [{ check: 'np-plugin', component: 'vyr', value: 'ok' }] });
    });
});

describe('a notice', () => {
    it('hands on a search hit with both sides decoded', () => {
        const { client, target } = scriptedClient({});
        const hits: unknown[] = [];
        client.listen('searchHit', (hit) => hits.push(hit));
        target.startsearchfileCallBack!({ result: { [base64('年.txt')]: base64('/家') } });
        expect(hits).toEqual([{ name: '年.txt', directory: '/家' }]);
    });

    it('hands on a finished check', () => {
        const { client, target } = scriptedClient({});
        const findings: unknown[] = [];
        client.listen('checkFinished', (finding) => findings.push(finding));
        target.returnvyrenvcheck!({ result: { value: base64('ok'), cmd: 'print', app: 'vyr' } });
        expect(findings).toEqual([{ check: 'print', component: 'vyr', value: 'ok' }]);
    });

    it('that is unreadable reaches nobody and is reported', () => {
        const warn = vi.spyOn(console, 'warn').mockImplementation(() => undefined);
        const { client, target } = scriptedClient({});
        const tips: unknown[] = [];
        client.listen('childTip', (tip) => tips.push(tip));
        target.hiddentipCallBack!({ result: 'blink' });
        target.hiddentipCallBack!({});
        target.hiddentipCallBack!({ result: 'hide' });
        expect(tips).toEqual(['hide']);
        expect(warn).toHaveBeenCalledTimes(2);
        warn.mockRestore();
    });

    it('stops coming after its listener left', () => {
        const { client, target } = scriptedClient({});
        const stop = client.listen('freshDump', () => undefined);
        expect(target.freshcrshpageCallBack).toBeDefined();
        stop();
        expect(target.freshcrshpageCallBack).toBeUndefined();
    });
});
