import { describe, expect, it } from 'vitest';
import chinese from '@/views/home/texts.zh-CN.json';
import english from '@/views/home/texts.en.json';
import {
    diagnoseAssociations,
    diagnoseDumps,
    diagnoseInputMethod,
    diagnoseMemory,
    diagnosePermissions,
    diagnoseShortcuts,
    diagnoseUpdater,
} from '@/views/home/checkup/diagnoses';
import { findingId, type StepResult } from '@/views/home/checkup/finding';

const row = (extension: string, good: boolean) => ({ extension, value: 'x', good });
const unknown = (extension: string) => ({ extension, value: '', good: false });
const associations = (...rows: ReturnType<typeof row>[]) => ({
    writer: rows,
    presentation: [],
    spreadsheet: [],
});
const shortcuts = (files: string[], integrated = false) => ({
    files,
    integrated,
    mode: '',
    supported: { chartBoard: false, docket: false, fixedComponent: false },
});
const separate = ['vyr-office-vyr.desktop', 'vyr-office-tbl.desktop', 'vyr-office-shw.desktop'];
const kinds = ({ findings }: StepResult): string[] => findings.map(({ kind }) => kind);
const file = (owner: string, permissions: string) => ({
    name: 'Orvane',
    exists: permissions !== '',
    owner,
    group: '',
    permissions,
    modified: '',
});

/** One result of every kind of finding that the diagnoses can make. */
const allResults = [
    ...[
        'ERR_OTHER',
        'ERR_LOADPLUGIN_FAILED',
        'ERR_NOT_RUNNING',
        'ERR_NOT_FIND_BUSCONFIG',
        'ERR_INVALID_ENV_CONFIG',
        '输入法',
        'ERR_OK',
    ].map(diagnoseInputMethod),
    diagnoseAssociations(associations(row('.doc', false)), associations(row('.doc', false))),
    diagnoseAssociations(associations(), associations()),
    diagnoseAssociations(associations(row('.doc', false)), associations(unknown('.doc'))),
    diagnoseShortcuts(shortcuts([])),
    diagnoseShortcuts(shortcuts([...separate, 'vyr-office-tessaly.desktop'])),
    diagnoseShortcuts(shortcuts(['Folder'])),
    diagnoseDumps({ enabled: false, dumpAvailable: true }),
    diagnoseUpdater(false, null),
    diagnoseUpdater(true, null),
    diagnoseUpdater(true, {}),
    ...['111-000-000', '101-000-000', '011-000-000', '110-000-000', '111-000-111'].map((digits) =>
        diagnosePermissions([file('user', digits)], 'user'),
    ),
    ...['111-000-000', '111-000-111'].map((digits) =>
        diagnosePermissions([file('root', digits)], 'user'),
    ),
    ...['111-000-000', '111-000-111'].map((digits) =>
        diagnosePermissions([file('', digits)], 'user'),
    ),
    diagnosePermissions([], 'root'),
    ...[null, 10, 85, 95].map((usedPercent) => diagnoseMemory({ usedPercent, totalGibibytes: 8 })),
];

describe('every finding', () => {
    const found = allResults.flatMap(({ findings }) => findings);

    it('has its sentence in both languages', () => {
        expect(new Set(found.map(({ kind }) => kind))).toEqual(
            new Set(Object.keys(english.checkup.findings)),
        );
        expect(Object.keys(chinese.checkup.findings)).toEqual(
            Object.keys(english.checkup.findings),
        );
    });

    it('that is repaired at once has words for the repair and for what it brought', () => {
        for (const { kind, repair } of found) {
            if (!repair) continue;
            expect(english.checkup.kinds).toHaveProperty(kind);
            expect(english.checkup.repairs).toHaveProperty(repair);
        }
    });

    it('has a note for the time when it is gone', () => {
        for (const {
            note: { key },
        } of allResults) {
            expect(english.checkup.notes).toHaveProperty(key);
        }
    });
});

describe('file associations', () => {
    it('are no finding when the desktop cannot be asked, since no repair would help', () => {
        const result = diagnoseAssociations(
            associations(row('.doc', false)),
            associations(unknown('.doc'), unknown('.odt')),
        );
        expect(kinds(result)).toEqual([]);
        expect(result.note.key).toBe('noTypeTool');
    });

    it('are told by extension, the same again by the same name', () => {
        const result = diagnoseAssociations(
            associations(row('.doc', false), row('.docx', true)),
            associations(row('.doc', true)),
        );
        expect(kinds(result)).toEqual(['otherApplication']);
        expect(result.findings[0]!.values).toEqual({ bad: 1, count: 2, names: '.doc' });
        expect(findingId(result.findings[0]!)).toBe('associations:otherApplication:.doc');
    });

    it('are not listed in full when they are many', () => {
        const many = Array.from({ length: 9 }, (_, index) => row(`.${index}`, false));
        expect(
            diagnoseAssociations(associations(...many), associations()).findings[0]!.values,
        ).toEqual({ bad: 9, count: 9, names: '.0 .1 .2 .3 .4 .5 …' });
    });

    it('without sample documents are no problem', () => {
        expect(diagnoseAssociations(associations(), associations()).findings).toEqual([]);
    });
});

describe('desktop shortcuts', () => {
    it('in place need no fix', () => {
        expect(diagnoseShortcuts(shortcuts(separate)).findings).toEqual([]);
        expect(diagnoseShortcuts(shortcuts(['vyr-office-tessaly.desktop'], true)).findings).toEqual(
            [],
        );
    });

    it('are restored as the component mode wants them', () => {
        expect(diagnoseShortcuts(shortcuts([])).findings[0]!.repair).toBe('restoreSeparate');
        expect(diagnoseShortcuts(shortcuts(separate, true)).findings[0]!.repair).toBe(
            'restoreIntegrated',
        );
    });

    it('that are all gone may be so on purpose', () => {
        expect(diagnoseShortcuts(shortcuts([])).findings[0]!.state).toBe('plain');
        expect(diagnoseShortcuts(shortcuts(separate.slice(1))).findings[0]!.state).toBe('warning');
    });

    it.each(['My Desktop', 'desktop'])(
        'are not judged when the folder %s is listed in their place',
        (folder) => {
            const result = diagnoseShortcuts(shortcuts([folder, folder]));
            expect(kinds(result)).toEqual([]);
            expect(result.note.key).toBe('shortcutsUnclear');
        },
    );
});
