import { describe, expect, it } from 'vitest';
import { taskNames } from '@/client/wire/host';
import { exportResultText } from '@/tasks/exportresult';
import { base64, scriptedClient, type Answer } from './scriptedhost';

const offered = [...taskNames, 'task.cancel', 'task.findings', 'task.printed'];
const done = { end: 'done', reason: '', file: '/home/u/a b', opened: true };

function client(answers: Record<string, Answer>) {
    return scriptedClient(answers, offered);
}

describe('a task of the shell', () => {
    it.each([
        [done, { kind: 'done', value: 'shown' }],
        [
            { ...done, opened: false },
            { kind: 'done', value: 'saved' },
        ],
        [
            { ...done, end: 'failed', reason: '/x cannot be written' },
            { kind: 'broken', reason: '/x cannot be written' },
        ],
        [{ ...done, end: 'cancelled' }, { kind: 'stopped' }],
        [{ ...done, end: 'dismissed' }, { kind: 'failed' }],
        [
            { ...done, end: 'maybe' },
            { kind: 'unreadable', reason: 'unknown word: maybe' },
        ],
    ])('ends as it says: %j', async (result, expected) => {
        const { client: shell, sent } = client({ 'task.report': { result } });
        expect(await shell.exportReport()).toEqual(expected);
        expect(sent.map(({ command }) => command)).toEqual(['task.report']);
    });

    it('says “saved” only of a report that was read back', async () => {
        const t = (key: string) => key;
        const command = scriptedClient({ exportsysinfo: { result: 'success' } }).client;
        expect(exportResultText(t, await command.exportReport())).toBe('export.started');
        const task = client({ 'task.report': { result: done } }).client;
        expect(exportResultText(t, await task.exportReport())).toBe('export.shown');
    });

    it('takes files of any name into the archive, each under its own', async () => {
        const { client: shell, sent } = client({ 'task.archive': { result: done } });
        const feedback = {
            category: 'crash',
            description: 'two\nlines',
            sample: '/a/x y.docx',
            attachments: ['/b/x y.docx', '/b/$(z);.txt'],
            systemInformation: true,
            suiteSettings: false,
            crashDumps: false,
        };
        const outcome = await shell.buildArchive(feedback, false);
        expect(outcome).toEqual({ kind: 'done', value: '/home/u/a b' });
        expect(sent[0]?.args).toMatchObject({
            open: false,
            files: [
                { path: '/a/x y.docx', name: 'x y.docx' },
                { path: '/b/x y.docx', name: '2-x y.docx' },
                { path: '/b/$(z);.txt', name: '$(z);.txt' },
            ],
            report: true,
            settings: false,
        });
    });

    it('answers a check itself, and keeps the answers', async () => {
        const findings = { 'fonts-vyr': 'kept' };
        const { client: shell } = client({
            'task.check': { result: { ...done, value: 'one is missing' } },
            'task.findings': { result: { findings } },
        });
        const finding = { check: 'fonts', component: 'vyr' };
        expect(await shell.startCheck('fonts', 'vyr')).toEqual({
            kind: 'done',
            value: { ...finding, value: 'one is missing' },
        });
        expect(await shell.keptFindings()).toEqual({
            kind: 'done',
            value: [{ ...finding, value: 'kept' }],
        });
    });

    it('passes on what a command in a process of its own has answered', async () => {
        const envelope = (result: unknown): Answer => ({
            result: { ...done, envelope: { result } },
        });
        const { client: shell } = client({
            'task.fonts': envelope({ MissFonts: base64('Arial|') }),
            'task.server': envelope('parame error'),
            'task.input': envelope('ERR_OK'),
        });
        expect(await shell.missingFonts('/a b')).toEqual({ kind: 'done', value: 'Arial|' });
        expect(await shell.checkInputMethod()).toEqual({ kind: 'done', value: 'ERR_OK' });
        expect(
            await shell.testServer({ url: '', functionName: '', headers: [], fields: [] }),
        ).toEqual({ kind: 'badRequest' });
    });

    it('tells the feedback which document it has printed', async () => {
        const { client: shell } = client({
            getcollectionpage: { result: { page: 'print', file: '' } },
            'task.printed': { result: { document: '/a b.docx' } },
        });
        expect(await shell.feedbackOrigin()).toEqual({
            kind: 'done',
            value: { page: 'print', file: '/a b.docx' },
        });
    });
});
