import { describe, expect, it } from 'vitest';
import type { Association, Associations } from '@/client';
import {
    associationGroups,
    associationText,
    isGood,
    problemCount,
    programName,
    rowCount,
    toolsMissing,
} from '@/views/associations/associationrows';
import { readAssociations } from '@/views/associations/reading';
import { repairAssociations } from '@/views/associations/repairing';
import { scriptedClient } from './scriptedhost';

const one = (extension: string, value: string, good: boolean): Association => ({
    extension,
    value,
    good,
});

function listing(...writer: Association[]): Associations {
    return { writer, presentation: [], spreadsheet: [] };
}

describe('the associations', () => {
    const groups = associationGroups(
        listing(one('.doc', 'application/vyr-office', true), one('.rtf', 'text/rtf', false)),
        listing(
            one('.doc', 'vyr-office-vyr.desktop', true),
            one('.rtf', 'vyr-office-vyr.desktop', false),
        ),
    );

    it('stand by application, both listings side by side', () => {
        expect(groups.map(({ application }) => application)).toEqual([
            'writer',
            'spreadsheet',
            'presentation',
        ]);
        expect(groups[0]!.rows[0]).toEqual({
            extension: '.doc',
            mimeType: 'application/vyr-office',
            mimeGood: true,
            entry: 'vyr-office-vyr.desktop',
            entryGood: true,
        });
        expect([rowCount(groups), problemCount(groups)]).toEqual([2, 1]);
    });

    it('do not believe the entry of a row that is not good', () => {
        expect(groups[0]!.rows.map(programName)).toEqual(['writer', 'other']);
    });

    it('count a type that only one listing has as one that needs a fix', () => {
        const [writer] = associationGroups(listing(one('.doc', 'a', true)), listing());
        expect(isGood(writer!.rows[0]!)).toBe(false);
    });

    it('tell missing tools from wrong types', () => {
        expect(toolsMissing(groups)).toBe(false);
        expect(toolsMissing(associationGroups(listing(one('.doc', '', false)), listing()))).toBe(
            true,
        );
        expect(toolsMissing(associationGroups(listing(), listing()))).toBe(false);
    });

    it('are copied as text by application', () => {
        expect(
            associationText(
                groups.slice(0, 1),
                (name) => name,
                ({ extension }) => extension,
            ),
        ).toBe('== writer ==\n.doc\n.rtf');
    });

    it('are read one listing after the other, the odd spelling of one entry corrected', async () => {
        const { client, sent } = scriptedClient({
            getassomime: { result: [{ '.doc': 'application/vyr-office|true' }, {}, {}] },
            getassoopen: { result: [{ '.doc': 'vyr-office-vyr.dekstop|true' }, {}, {}] },
        });
        const outcome = await readAssociations(client);
        expect(sent.map(({ command }) => command)).toEqual(['getassomime', 'getassoopen']);
        expect(outcome.kind === 'done' && programName(outcome.value.groups[0]!.rows[0]!)).toBe(
            'writer',
        );
    });

    it('are not read at all when the first listing fails', async () => {
        const { client, sent } = scriptedClient({ getassomime: { result: 'error' } });
        expect(await readAssociations(client)).toEqual({ kind: 'failed' });
        expect(sent).toHaveLength(1);
    });

    const openings = {
        end: 'done',
        suite: 'libreoffice',
        name: 'LibreOffice',
        rows: [
            {
                suffix: 'doc',
                program: 'vyr-office-vyr.desktop',
                type: 'application/msword',
                entry: 'lo.desktop',
                isKnown: true,
                isSuite: true,
            },
            {
                suffix: 'xls',
                program: 'vyr-office-tbl.desktop',
                type: '',
                entry: '',
                isKnown: false,
                isSuite: false,
            },
        ],
        programs: { 'lo.desktop': { title: 'Writer', icon: 'data:image/png;base64,' } },
    };

    it('are asked of the desktop by a shell that can cancel that', async () => {
        const { client, sent } = scriptedClient({ 'task.associations': { result: openings } }, [
            'task.associations',
        ]);
        const outcome = await readAssociations(client);
        if (outcome.kind !== 'done') throw new Error(outcome.kind);
        expect(sent.map(({ command }) => command)).toEqual(['task.associations']);
        expect(outcome.value).toMatchObject({ suite: 'libreoffice', suiteName: 'LibreOffice' });
        const [writer, spreadsheet] = outcome.value.groups;
        expect(writer!.rows[0]).toMatchObject({ extension: '.doc', look: { title: 'Writer' } });
        expect(isGood(spreadsheet!.rows[0]!)).toBe(false);
        expect(problemCount(outcome.value.groups)).toBe(1);
    });

    it('cannot be wrong without a suite', async () => {
        const { client } = scriptedClient(
            { 'task.associations': { result: { ...openings, suite: '', name: '' } } },
            ['task.associations'],
        );
        const outcome = await readAssociations(client);
        expect(outcome.kind === 'done' && problemCount(outcome.value.groups)).toBe(0);
    });

    it('are fixed one by one, and only that one is judged', async () => {
        const { client, sent } = scriptedClient({ 'task.associate': { result: openings } }, [
            'task.associations',
        ]);
        expect(await repairAssociations(client, ['.doc'], () => undefined)).toEqual({
            kind: 'done',
            value: true,
        });
        expect(sent[0]!.args).toMatchObject({ suffixes: ['doc'] });
        expect(await repairAssociations(client, [], () => undefined)).toEqual({
            kind: 'done',
            value: false,
        });
    });
});
