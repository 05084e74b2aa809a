import type { Caller } from './wire/caller';
import {
    flag,
    members,
    numberedLines,
    list,
    number,
    optional,
    success,
    text,
    textTable,
} from './wire/decode';
import { UnreadableAnswer, type Outcome } from './wire/outcome';
import { systemSnapshot } from './systemsnapshot';

export interface Process {
    id: number;
    user: string;
    /** Per cent of the machine's memory. */
    memory: number;
    /** Per cent of one processor. */
    processor: number;
    command: string;
}

export interface MachineMemory {
    /** Null when the machine did not tell. */
    usedPercent: number | null;
    totalGibibytes: number | null;
}

export interface FilePermissions {
    name: string;
    exists: boolean;
    owner: string;
    group: string;
    /** Like 110-100-100: read, write, execute for owner, group and others. */
    permissions: string;
    /** Time of day of the last change. */
    modified: string;
    /** From a shell that tells the whole path, absolute or in the home folder as "~/". */
    path?: string;
    kind?: string;
    /** In octal; empty where it does not exist. */
    mode?: string;
    /** When it was changed last; null where it does not exist. */
    changed?: Date | null;
}

/** What a list of files shows beside a name. */
export interface FileLook {
    /** Empty where it does not exist. */
    kind: string;
    /** In bytes; null for all but plain files. */
    size: number | null;
    changed: Date | null;
}

/** Whether the report was read back, and whether the desktop shows it. */
export type ReportEnd = 'started' | 'saved' | 'shown';

function reportEnd(result: unknown): ReportEnd {
    return flag(members(result).opened) ? 'shown' : 'saved';
}

function process(line: string): Process {
    const [id = '', user = '', memory = '', processor = '', ...command] = line.trim().split(/ +/);
    return {
        id: Number(id),
        user,
        memory: decimal(memory) ?? 0,
        processor: decimal(processor) ?? 0,
        command: command.join(' '),
    };
}

/** `top` writes a decimal comma in many locales. */
function decimal(number: string): number | null {
    const value = Number.parseFloat(number.replace(',', '.'));
    return Number.isFinite(value) ? value : null;
}

function processes(result: unknown): Process[] {
    const [table] = list(result);
    if (table === undefined) throw new UnreadableAnswer('no process table');
    return numberedLines(table)
        .filter((line) => line.trim() !== '')
        .map(process);
}

function machineMemory(result: unknown): MachineMemory {
    const { percentage, all } = members(result);
    return { usedPercent: decimal(text(percentage)), totalGibibytes: decimal(text(all)) };
}

function filePermissions(result: unknown): FilePermissions[] {
    return Object.entries(textTable(result)).map(([name, joined]) => {
        const [owner = '', group = '', permissions = '', modified = ''] = joined.split('|');
        return { name, exists: permissions !== '', owner, group, permissions, modified };
    });
}

/** "110-100-100" for "0644". */
function digits(mode: string): string {
    return [...mode.slice(-3)].map((digit) => Number(digit).toString(2).padStart(3, '0')).join('-');
}

function described(result: unknown): FilePermissions[] {
    return list(members(result).paths).map((one) => {
        const row = members(one);
        const path = text(row.path);
        const mode = optional(row.mode, text, '');
        const changed = optional(row.changed, text, '');
        return {
            name: path.slice(path.lastIndexOf('/') + 1),
            exists: flag(row.exists),
            owner: optional(row.owner, text, ''),
            group: optional(row.group, text, ''),
            permissions: digits(mode),
            modified: '',
            path,
            kind: optional(row.kind, text, ''),
            mode,
            changed: changed === '' ? null : new Date(changed),
        };
    });
}

function looks(result: unknown): FileLook[] {
    return list(members(result).paths).map((one) => {
        const row = members(one);
        const changed = optional(row.changed, text, '');
        return {
            kind: optional(row.kind, text, ''),
            size: optional(row.size, number, null),
            changed: changed === '' ? null : new Date(changed),
        };
    });
}

/** The most paths that are looked at in one call. */
export const mostPaths = 500;

/** Any paths, from a shell that looks at them itself. */
export function pathOperations(caller: Caller) {
    return {
        get isOffered(): boolean {
            return caller.offers('task.paths');
        },
        read: (paths: string[]) => caller.perform('task.paths', described, { paths }),
        /** At most `mostPaths`; one answer for each, in their order. */
        look: (paths: string[]) => caller.perform('task.paths', looks, { paths }),
        /** The path of a file that the user chooses; fails when the dialog was cancelled. */
        choose: () => caller.perform('task.choose', (result) => text(members(result).file)),
        /** Saves a list as a file that the user chooses; gives its path. */
        save: (content: string) =>
            caller.perform('task.listing', (result) => text(members(result).file), {
                text: content,
            }),
    };
}

/** System information, load and configuration files. */
export function systemCommands(caller: Caller) {
    return {
        systemSnapshot: () => caller.askAside('task.system', 'stratcheckenv', systemSnapshot),
        /**
         * Fails when the dialog was cancelled; unanswered when the report was not opened. The
         * command does not look whether it could write the report.
         */
        exportReport: (): Promise<Outcome<ReportEnd>> =>
            caller.offers('task.report')
                ? caller.perform('task.report', reportEnd)
                : caller.ask('exportsysinfo', (result) => {
                      success(result);
                      return 'started';
                  }),
        /** Fails when the dialog was cancelled. */
        addConfigurationFile: () => caller.ask('addconfigfile', success),
        configurationFiles: () => caller.ask('stratextractfileinfo', filePermissions),
        exportConfigurationFiles: () => caller.ask('exportoftenfileperm', success),
        exportOneFile: () => caller.ask('exportspecialfileperm', success),
        busiestProcesses: () => caller.ask('getcpuinfo', processes),
        largestProcesses: () => caller.ask('getmemoryinfo', processes),
        machineMemory: () => caller.ask('getcomputermemory', machineMemory),
    };
}
