import type { DesktopShortcuts } from '@/client';

/** The shortcuts that a restore puts in place or removes, named as their texts are. */
const known = {
    'vyr-office-vyr.desktop': 'writer',
    'vyr-office-tbl.desktop': 'spreadsheet',
    'vyr-office-shw.desktop': 'presentation',
    'vyr-office-pdf.desktop': 'pdf',
    'vyr-office-fixed.desktop': 'fixed',
    'vyr-office-chart.desktop': 'chart',
    'vyr-office-board.desktop': 'board',
    'vyr-office-docket.desktop': 'docket',
    'vyr-office-tessaly.desktop': 'integrated',
} as const;

type ShortcutFile = keyof typeof known;
export type ShortcutName = (typeof known)[ShortcutFile];
const shortcutFiles = Object.keys(known) as ShortcutFile[];

/** One shortcut for each application, or one for all of them. */
export type ShortcutSet = 'separate' | 'integrated';

/** The shortcuts that each set must have; the rest depends on what is installed. */
const needed: Record<ShortcutSet, ShortcutFile[]> = {
    separate: ['vyr-office-vyr.desktop', 'vyr-office-tbl.desktop', 'vyr-office-shw.desktop'],
    integrated: ['vyr-office-tessaly.desktop'],
};

/** The set that fits the component mode. */
export function fittingSet({ integrated }: DesktopShortcuts): ShortcutSet {
    return integrated ? 'integrated' : 'separate';
}

export function missingFrom(set: ShortcutSet, { files }: DesktopShortcuts): ShortcutFile[] {
    return needed[set].filter((file) => !files.includes(file));
}

/** The shortcuts of the other set that are there. */
function strangersTo(set: ShortcutSet, { files }: DesktopShortcuts): ShortcutFile[] {
    const other = set === 'separate' ? 'integrated' : 'separate';
    return needed[other].filter((file) => files.includes(file));
}

export function hasSet(set: ShortcutSet, shortcuts: DesktopShortcuts): boolean {
    return missingFrom(set, shortcuts).length === 0 && strangersTo(set, shortcuts).length === 0;
}

export interface ShortcutRow {
    file: string;
    /** Null for a shortcut of the suite that no restore knows. */
    name: ShortcutName | null;
    present: boolean;
    /** Whether the component mode asks for it. */
    needed: boolean;
    /** A data address, or nothing. */
    icon: string;
    /** What the desktop shows below it; empty where nobody has looked. */
    title: string;
}

const isShortcut = (file: string): boolean => /^vyr-office.*desktop$/.test(file);

export function shortcutRows(shortcuts: DesktopShortcuts): ShortcutRow[] {
    const look = (file: string) => shortcuts.looks.get(file) ?? { title: '', icon: '' };
    const wanted: string[] = needed[fittingSet(shortcuts)];
    const rows = shortcutFiles.map(
        (file): ShortcutRow => ({
            file,
            name: known[file],
            present: shortcuts.files.includes(file),
            needed: wanted.includes(file),
            ...look(file),
        }),
    );
    const others = shortcuts.files
        .filter((file) => isShortcut(file) && !(file in known))
        .map(
            (file): ShortcutRow => ({
                file,
                name: null,
                present: true,
                needed: false,
                ...look(file),
            }),
        );
    return [...rows, ...others];
}

/**
 * The listing cuts paths at a fixed depth: for a desktop folder deeper in the home directory it
 * names that folder once for each shortcut, and not the shortcuts.
 */
export function deepDesktop({ files }: DesktopShortcuts): { folder: string; count: number } | null {
    const [folder] = files;
    if (folder === undefined || files.some((file) => file !== folder) || isShortcut(folder)) {
        return null;
    }
    return { folder, count: files.length };
}
