import type { Caller } from './wire/caller';
import { flag, members, numberedLines, list, success, text, textTable } from './wire/decode';
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
