import type { Caller } from './wire/caller';
import {
    flag,
    joinedList,
    list,
    members,
    optional,
    success,
    text,
    type Members,
} from './wire/decode';
import { UnreadableAnswer } from './wire/outcome';
import { programLooks, type ProgramLook } from './processes';

export interface DesktopShortcuts {
    files: string[];
    /** "helio_fushion" is the integrated mode; anything else is one application each. */
    integrated: boolean;
    mode: string;
    supported: { chartBoard: boolean; docket: boolean; fixedComponent: boolean };
    /** By the file; only from a shell that looks at the shortcuts. */
    looks: Map<string, ProgramLook>;
}

export interface Association {
    extension: string;
    /** A MIME type or a desktop entry. */
    value: string;
    /** Whether it is the suite's. */
    good: boolean;
}

export interface Associations {
    writer: Association[];
    presentation: Association[];
    spreadsheet: Association[];
}

/** A kind of documents as the desktop has it, from a shell that asks the desktop itself. */
interface DocumentOpening {
    /** Without its dot. */
    suffix: string;
    /** The desktop entry of this suite's program for it. */
    program: string;
    type: string;
    entry: string;
    /** Whether the type is one of the suite's documents. */
    isKnown: boolean;
    /** Whether the suite opens it. */
    isSuite: boolean;
}

export interface DocumentOpenings {
    /** "own" for this suite, the id of the one that stands in for it, or nothing without any. */
    suite: string;
    /** Of a suite that stands in for it. */
    name: string;
    rows: DocumentOpening[];
    /** By the desktop entry. */
    programs: Map<string, ProgramLook>;
}

function documentOpenings(result: unknown): DocumentOpenings {
    const { suite, name, rows, programs } = members(result);
    return {
        suite: text(suite),
        name: text(name),
        rows: list(rows).map((one) => {
            const row = members(one);
            return {
                suffix: text(row.suffix),
                program: text(row.program),
                type: text(row.type),
                entry: text(row.entry),
                isKnown: flag(row.isKnown),
                isSuite: flag(row.isSuite),
            };
        }),
        programs: programLooks(programs),
    };
}

function desktopShortcuts(result: unknown): DesktopShortcuts {
    const { icon, mode, chartboard, docket, fixedcomponent, looks } = members(result);
    return {
        files: joinedList(icon),
        integrated: mode === 'helio_fushion',
        mode: text(mode),
        supported: {
            chartBoard: flag(chartboard),
            docket: flag(docket),
            fixedComponent: flag(fixedcomponent),
        },
        looks: optional(looks, programLooks, new Map()),
    };
}

function application(table: Members): Association[] {
    return Object.entries(table).map(([extension, joined]) => {
        const pieces = text(joined).split('|');
        const state = pieces.pop() ?? '';
        // The script that lists default applications spells one entry so.
        const value = pieces.join('|').replace(/\.dekstop$/, '.desktop');
        return { extension, value, good: state === 'true' };
    });
}

function associations(result: unknown): Associations {
    const tables = list(result);
    if (tables.length !== 3) throw new UnreadableAnswer('not three applications');
    const [writer, presentation, spreadsheet] = tables.map((table) => application(members(table)));
    return { writer: writer!, presentation: presentation!, spreadsheet: spreadsheet! };
}

/** Desktop shortcuts and file associations. Repairs run on after their answer. */
export function desktopCommands(caller: Caller) {
    return {
        desktopShortcuts: () =>
            caller.askAside('task.shortcuts', 'getdesktopiconfile', desktopShortcuts),
        restoreSeparateShortcuts: () => caller.ask('fixfouricon', success),
        restoreIntegratedShortcut: () => caller.ask('fixoneicon', success),
        defaultApplications: () => caller.ask('getassoopen', associations),
        mimeTypes: () => caller.ask('getassomime', associations),
        repairAssociations: () => caller.ask('fileassorepair', success),
    };
}

/** The desktop's own answer about associations, from a shell that waits for it aside. */
export function openingOperations(caller: Caller) {
    return {
        get isOffered(): boolean {
            return caller.offers('task.associations');
        },
        read: () => caller.perform('task.associations', documentOpenings),
        /** Fixes the associations of these kinds, or of all; gives them as they are then. */
        repair: (suffixes: string[] = []) =>
            caller.perform('task.associate', documentOpenings, { suffixes }),
    };
}
