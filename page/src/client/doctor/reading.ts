/** What the doctor answers. */
import { list, members, number, optional, text, textList, word } from '../wire/decode';
import type { CommandName } from '../wire/host';

export interface ListedCheck {
    check: string;
    /** What holds on a healthy machine. */
    title: string;
    /** By the repair's id. */
    repairTitles: Record<string, string>;
}

interface CheckList {
    checks: ListedCheck[];
    /** What is wrong in check files, each with its place. */
    mistakes: string[];
}

const results = ['ok', 'finding', 'failed', 'skipped'] as const;
const states = ['bad', 'warning', 'note'] as const;
const repairResults = ['repaired', 'unchanged', 'refused', 'failed'] as const;
const undoResults = ['undone', 'conflict', 'failed'] as const;
const entryStates = ['begun', 'applied', 'undone', 'taken-back', 'damaged'] as const;
const changeKinds = ['write', 'create', 'remove', 'move', 'rights', 'end', 'command'] as const;

/** How a check has ended; the reason is for people. */
export interface CheckResult {
    check: string;
    result: (typeof results)[number];
    reason: string;
}

export interface Place {
    path: string;
    /** From 1; 0 for the whole file. */
    line: number;
    process: number;
}

export interface DoctorFinding {
    /** Names the finding until its check runs again. */
    number: number;
    check: string;
    state: (typeof states)[number];
    text: string;
    where: Place[];
    /** Ids of the repairs that fit, the recommended one first. */
    repairs: string[];
}

/** How a whole look compares with the one before, if the shell keeps them. */
export interface LookChange {
    /** Since when the outcome is what it is now. */
    since: Date;
    /** When the look before was made; null for the first. */
    last: Date | null;
    /** Checks. */
    fixed: string[];
    appeared: string[];
    /** Why this look could not be kept; empty if it was. */
    unkept: string;
}

/** What whole looks have found from one time to another. */
export interface KeptLook {
    since: Date;
    until: Date;
    /** Checks that found something, and those that failed. */
    found: string[];
    failed: string[];
}

/** What a look reports while it is under way. */
export interface LookListener {
    check: (result: CheckResult) => void;
    finding: (finding: DoctorFinding) => void;
    note: (text: string) => void;
}

export interface PlannedChange {
    kind: (typeof changeKinds)[number];
    path: string;
    target: string;
    /** A unified diff; may be empty. */
    diff: string;
    /** For the administrator; empty for what the doctor does itself. */
    command: string;
    mode: string;
    process: number;
}

export interface RepairPlan {
    number: number;
    changes: PlannedChange[];
    /** Why nothing can be done; empty otherwise. */
    refusal: string;
}

export interface RepairOutcome {
    result: (typeof repairResults)[number];
    /** The repair's number in the history. */
    journal: number;
    reason: string;
}

export interface UndoOutcome {
    result: (typeof undoResults)[number];
    reason: string;
    /** Files that were changed after the repair. */
    kept: string[];
}

/** Commands of the library that the doctor can watch, and "associate" for some associations. */
export type RepairCommand =
    | 'associate'
    | Extract<
          CommandName,
          | 'fixfouricon'
          | 'fixoneicon'
          | 'fileassorepair'
          | 'startDump'
          | 'stopDump'
          | 'cleardumpdir'
      >;

export interface CommandPreview {
    /** As far as they are known before. */
    changes: PlannedChange[];
    /** All that the command may change. */
    paths: string[];
    /** Why it cannot be undone; empty otherwise. */
    lasting: string;
}

/** What a command has changed; it failed if the doctor still finds what it is for. */
interface WatchedRepair extends RepairOutcome {
    changes: PlannedChange[];
}

export interface HistoryEntry {
    journal: number;
    time: Date;
    check: string;
    repair: string;
    state: (typeof entryStates)[number];
    paths: string[];
}

export function checkList(result: unknown): CheckList {
    const { checks, mistakes } = members(result);
    return {
        checks: list(checks).map((one) => {
            const { check, title, repairTitles } = members(one);
            const titles = Object.entries(members(repairTitles));
            return {
                check: text(check),
                title: text(title),
                repairTitles: Object.fromEntries(titles.map(([id, name]) => [id, text(name)])),
            };
        }),
        mistakes: list(mistakes).map((one) => {
            const { file, line, column, message } = members(one);
            return `${text(file)}:${number(line)}:${number(column)}: ${text(message)}`;
        }),
    };
}

export function place(value: unknown): Place {
    const { path, line, process } = members(value);
    return {
        path: optional(path, text, ''),
        line: optional(line, number, 0),
        process: optional(process, number, 0),
    };
}

function finding(line: Record<string, unknown>): DoctorFinding {
    return {
        number: number(line.finding),
        check: text(line.check),
        state: word(line.state, states),
        text: text(line.text),
        where: list(line.where).map(place),
        repairs: textList(line.repairs),
    };
}

export function tell(listener: LookListener, line: unknown): void {
    const values = members(line);
    if (values.type === 'check') {
        const { check, result, reason } = values;
        listener.check({ check: text(check), result: word(result, results), reason: text(reason) });
    } else if (values.type === 'finding') {
        listener.finding(finding(values));
    } else if (values.type === 'note') {
        listener.note(text(values.text));
    }
}

export function lookChange(result: unknown): LookChange | null {
    const { since, last, fixed, new: appeared, unkept } = members(result);
    if (since === undefined) return null;
    return {
        since: new Date(text(since)),
        last: text(last) ? new Date(text(last)) : null,
        fixed: textList(fixed),
        appeared: textList(appeared),
        unkept: text(unkept),
    };
}

export function keptLooks(result: unknown): KeptLook[] {
    return list(members(result).checkups).map((one) => {
        const { since, until, found, failed } = members(one);
        return {
            since: new Date(text(since)),
            until: new Date(text(until)),
            found: textList(found),
            failed: textList(failed),
        };
    });
}

function plannedChange(value: unknown): PlannedChange {
    const { kind, path, target, diff, command, mode, process } = members(value);
    return {
        kind: word(kind, changeKinds),
        path: text(path),
        target: optional(target, text, ''),
        diff: text(diff),
        command: text(command),
        mode: optional(mode, text, ''),
        process: optional(process, number, 0),
    };
}

export function repairPlan(result: unknown): RepairPlan {
    const { plan, changes, refusal } = members(result);
    return {
        number: number(plan),
        changes: list(changes).map(plannedChange),
        refusal: text(refusal),
    };
}

export function repairOutcome(answer: unknown): RepairOutcome {
    const { result, journal, reason } = members(answer);
    return { result: word(result, repairResults), journal: number(journal), reason: text(reason) };
}

export function commandPreview(answer: unknown): CommandPreview {
    const { changes, paths, lasting } = members(answer);
    return {
        changes: list(changes).map(plannedChange),
        paths: textList(paths),
        lasting: text(lasting),
    };
}

export function watchedRepair(answer: unknown): WatchedRepair {
    const changes = list(members(answer).changes).map(plannedChange);
    return { ...repairOutcome(answer), changes };
}

export function undoOutcome(answer: unknown): UndoOutcome {
    const { result, reason, kept } = members(answer);
    return { result: word(result, undoResults), reason: text(reason), kept: textList(kept) };
}

export function historyEntries(result: unknown): HistoryEntry[] {
    return list(members(result).entries).map((entry) => {
        const { journal, time, check, repair, state, paths } = members(entry);
        return {
            journal: number(journal),
            time: new Date(text(time)),
            check: text(check),
            repair: text(repair),
            state: word(state, entryStates),
            paths: textList(paths),
        };
    });
}
