import type { Caller } from './wire/caller';
import { flag, joinedList, list, members, success, text, type Members } from './wire/decode';
import { UnreadableAnswer } from './wire/outcome';

export interface DesktopShortcuts {
    files: string[];
    /** "helio_fushion" is the integrated mode; anything else is one application each. */
    integrated: boolean;
    mode: string;
    supported: { chartBoard: boolean; docket: boolean; fixedComponent: boolean };
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

function desktopShortcuts(result: unknown): DesktopShortcuts {
    const { icon, mode, chartboard, docket, fixedcomponent } = members(result);
    return {
        files: joinedList(icon),
        integrated: mode === 'helio_fushion',
        mode: text(mode),
        supported: {
            chartBoard: flag(chartboard),
            docket: flag(docket),
            fixedComponent: flag(fixedcomponent),
        },
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
