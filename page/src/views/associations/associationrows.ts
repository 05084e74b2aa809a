import type { Association, Associations, DocumentOpenings, ProgramLook } from '@/client';

/** What the suite's own desktop entries are called in texts, by file name. */
const entries = {
    'vyr-office-vyr.desktop': 'writer',
    'vyr-office-shw.desktop': 'presentation',
    'vyr-office-tbl.desktop': 'spreadsheet',
    'vyr-office-tessaly.desktop': 'integrated',
} as const;

type EntryName = (typeof entries)[keyof typeof entries];

const applications = ['writer', 'spreadsheet', 'presentation'] as const;
export type Application = (typeof applications)[number];

export interface AssociationRow {
    extension: string;
    mimeType: string;
    mimeGood: boolean;
    /** The default application's desktop entry; only to be believed when it is good. */
    entry: string;
    entryGood: boolean;
    /** How the desktop shows the program; only where the shell has asked. */
    look?: ProgramLook;
}

export interface AssociationGroup {
    application: Application;
    rows: AssociationRow[];
}

/** What was read of all document types. */
export interface AssociationReading {
    groups: AssociationGroup[];
    /** Null where the shell does not tell, and empty without any suite. */
    suite: string | null;
    /** The name of a suite that stands in for this one. */
    suiteName: string;
}

const entriesOf: Record<Application, string> = {
    writer: 'vyr-office-vyr.desktop',
    spreadsheet: 'vyr-office-tbl.desktop',
    presentation: 'vyr-office-shw.desktop',
};

/** What the desktop itself says; without a suite nothing can be wrong. */
export function openingGroups({ suite, rows, programs }: DocumentOpenings): AssociationGroup[] {
    return applications.map((application) => ({
        application,
        rows: rows
            .filter(({ program }) => program === entriesOf[application])
            .map(({ suffix, type, entry, isKnown, isSuite }) => ({
                extension: `.${suffix}`,
                mimeType: type,
                mimeGood: isKnown || suite === '',
                entry,
                entryGood: isSuite || suite === '',
                look: programs.get(entry) ?? { title: entry, icon: '' },
            })),
    }));
}

/** The two listings side by side, extension by extension in the order of the listing. */
export function associationGroups(
    mimeTypes: Associations,
    defaults: Associations,
): AssociationGroup[] {
    return applications.map((application) => {
        const byExtension = (list: Association[]) =>
            new Map(list.map((association) => [association.extension, association]));
        const types = byExtension(mimeTypes[application]);
        const programs = byExtension(defaults[application]);
        const extensions = [...new Set([...types.keys(), ...programs.keys()])];
        const rows = extensions.map(
            (extension): AssociationRow => ({
                extension,
                mimeType: types.get(extension)?.value ?? '',
                mimeGood: types.get(extension)?.good ?? false,
                entry: programs.get(extension)?.value ?? '',
                entryGood: programs.get(extension)?.good ?? false,
            }),
        );
        return { application, rows };
    });
}

export const isGood = (row: AssociationRow): boolean => row.mimeGood && row.entryGood;

export function problemCount(groups: AssociationGroup[]): number {
    return groups.reduce((sum, { rows }) => sum + rows.filter((row) => !isGood(row)).length, 0);
}

export function rowCount(groups: AssociationGroup[]): number {
    return groups.reduce((sum, { rows }) => sum + rows.length, 0);
}

/** Without the tools that ask the desktop, every value is empty. */
export function toolsMissing(groups: AssociationGroup[]): boolean {
    return (
        rowCount(groups) > 0 &&
        groups.every(({ rows }) => rows.every(({ mimeType }) => mimeType === ''))
    );
}

/**
 * The program of a row, by the name of its text. A row that is not good repeats the entry of the
 * row before it when nothing of the suite was found, so its own says nothing.
 */
export function programName({ entry, entryGood }: AssociationRow): EntryName | 'other' {
    if (!entryGood) return 'other';
    return entries[entry as keyof typeof entries] ?? 'other';
}

/** The whole table as text to paste. */
export function associationText(
    groups: AssociationGroup[],
    title: (application: Application) => string,
    line: (row: AssociationRow) => string,
): string {
    return groups
        .map(({ application, rows }) =>
            [`== ${title(application)} ==`, ...rows.map(line)].join('\n'),
        )
        .join('\n\n');
}
