import { describe, expect, it } from 'vitest';
import { archiveContents, chosenFiles, fileProblem } from '@/views/feedback/contents';
import { draftFrom, emptyDraft, withSample } from '@/views/feedback/draft';
import { parseDraft } from '@/views/feedback/keeping';

describe('the draft', () => {
    it('is the same after it was kept', () => {
        const draft = { ...emptyDraft(), description: 'two\nlines', attachments: ['/b'] };
        expect(parseDraft(JSON.stringify({ ...draft, category: 'print' }))).toEqual({
            ...draft,
            category: 'print',
        });
    });

    it.each(['', 'null', '[]', '{"description":3,"attachments":"x","crashDumps":"yes"}'])(
        'is empty where what was kept is %j',
        (kept) => expect(parseDraft(kept)).toEqual(emptyDraft()),
    );

    it('leaves dumps out unless the user comes from a crash', () => {
        expect(emptyDraft().crashDumps).toBe(false);
        expect(draftFrom({ page: 'crash', file: null })).toMatchObject({
            category: 'crash',
            crashDumps: true,
            sample: '',
        });
    });

    it('takes over the document of a layout or print problem', () => {
        expect(draftFrom({ page: 'layout', file: '/home/a.docx' })).toMatchObject({
            category: 'layout',
            sample: '/home/a.docx',
        });
        expect(draftFrom({ page: 'print', file: '' })).toMatchObject({
            category: 'print',
            sample: '',
        });
    });

    it('has a file once, also when an attachment is chosen as the sample', () => {
        const draft = { ...emptyDraft(), sample: '/a', attachments: ['/b', '/c'] };
        expect(withSample(draft, '/b')).toMatchObject({ sample: '/b', attachments: ['/c'] });
    });

    it.each(['', 'elsewhere', 'toString', '__proto__'])('starts empty from %j', (page) => {
        expect(draftFrom({ page, file: null })).toEqual(emptyDraft());
    });
});

const alike = { ...emptyDraft(), sample: '/a/x.docx', attachments: ['/b/y.png', '/b/x.docx'] };

describe('a file', () => {
    it.each([
        ['/home/a.docx', null],
        ['/home/文档/ä.docx', null],
        ['/home/no\u00A0break.docx', null],
        ['/home/my documents/a.docx', 'blank'],
        ['/home/a\tb.docx', 'blank'],
        ['/home/a;b.docx', 'semicolon'],
        ['/home/other/first.docx', 'sameName'],
        ['/home/describe.txt', 'reserved'],
        ['/home/setup.cfg', 'reserved'],
    ])('%j meets %s', (path, problem) => {
        expect(fileProblem(path, ['/home/first.docx'])).toBe(problem);
    });

    it('is compared with those that come before it', () => {
        const files = chosenFiles(alike, false);
        expect(files.map(({ role, problem }) => [role, problem])).toEqual([
            ['sample', null],
            ['attachment', null],
            ['attachment', 'sameName'],
        ]);
    });

    it('gets a number where the shell archives files of any name', () => {
        const attachments = ['/b/y $(x).png', '/b/x.docx', '/c/setup.cfg'];
        const files = chosenFiles({ ...alike, attachments }, true);
        expect(files.map(({ name, problem }) => [name, problem])).toEqual([
            ['x.docx', null],
            ['y $(x).png', null],
            ['2-x.docx', null],
            ['2-setup.cfg', null],
        ]);
    });
});

describe('the archive', () => {
    it('holds what was asked for, in the order in which it is packed', () => {
        const draft = { ...emptyDraft(), sample: '/a/x.docx', crashDumps: true };
        expect(archiveContents(draft, false, []).map(({ part }) => part)).toEqual([
            'description',
            'file',
            'systemInformation',
            'suiteSettings',
            'crashDumps',
        ]);
    });

    it('always holds the description', () => {
        const draft = { ...emptyDraft(), systemInformation: false, suiteSettings: false };
        expect(archiveContents(draft, true, [])).toEqual([
            { part: 'description', names: ['describe.txt'], problem: null },
        ]);
    });

    it('lacks a file that is no longer there', () => {
        const lines = archiveContents(alike, true, ['/b/y.png']);
        expect(lines.filter(({ part }) => part === 'file').map(({ problem }) => problem)).toEqual([
            null,
            'gone',
            null,
        ]);
    });
});
