import type { AccessReason, FilePermissions, Variable } from '@/client';
import { judged, type Judged } from '@/parts/judged';
import type { Found } from '@/tasks/findings';

/** What a path is found to be; each has its sentence under permissions.verdicts. */
type VerdictName =
    | 'missing'
    | 'unclear'
    | 'denied'
    | 'granted'
    | 'foreign'
    | 'foreignOpen'
    | 'nameless'
    | 'namelessOpen'
    | 'readOnly'
    | 'unreadable'
    | 'closed'
    | 'open'
    | 'unknownUser'
    | 'root'
    | 'good';

interface Verdict {
    name: VerdictName;
    /** In the doctor's words. */
    text?: string;
    state: Judged;
    /** Terminal commands that fix it; empty when there is nothing to fix. */
    commands: string[];
}

/** By keyOf() of each. */
export type AccessReasons = ReadonlyMap<string, AccessReason>;

export interface Rights {
    read: boolean;
    write: boolean;
    execute: boolean;
}

interface AllRights {
    owner: Rights;
    group: Rights;
    others: Rights;
}

/** The paths that the library always lists; of added files only the name is known. */
const knownPaths: Record<string, { path: string; directory: boolean }> = {
    'Office.conf': { path: '~/.config/Orvane/Office.conf', directory: false },
    '.config': { path: '~/.config', directory: true },
    Orvane: { path: '~/.config/Orvane', directory: true },
};

export const standardPaths = Object.values(knownPaths).map(({ path }) => path);

/** What tells a path from the others in the list. */
export const keyOf = ({ path, name }: FilePermissions): string => path ?? name;

/** What the doctor's checks of these paths say, by their ids below "permissions". */
const verdictsOfChecks: Record<string, VerdictName> = {
    foreign: 'foreign',
    'foreign-open': 'foreignOpen',
    nameless: 'nameless',
    unreadable: 'unreadable',
    'read-only': 'readOnly',
    closed: 'closed',
    open: 'open',
};
export const permissionChecks = Object.keys(verdictsOfChecks).map((name) => `permissions.${name}`);

/** The path of a listed name; null for an added file. */
export function knownPath(name: string): string | null {
    return Object.prototype.hasOwnProperty.call(knownPaths, name) ? knownPaths[name]!.path : null;
}

/** Where the file is; null where only its name is known. */
export function pathOf({ path, name }: FilePermissions): string | null {
    return path ?? knownPath(name);
}

/** One of the suite's own, and not an added one of that name. */
function isKnown(file: FilePermissions): boolean {
    const known = knownPath(file.name);
    return known !== null && pathOf(file) === known;
}

function isDirectory(file: FilePermissions): boolean {
    return isKnown(file) ? knownPaths[file.name]!.directory : file.kind === 'directory';
}

/** As a word of a command line. */
function shellWord(file: FilePermissions): string {
    const path = pathOf(file);
    if (path === null) return 'FILE';
    return path.startsWith('~/') ? path : `'${path.replace(/'/g, "'\\''")}'`;
}

/** Reads "110-100-100"; null for anything else. */
export function rightsOf(digits: string): AllRights | null {
    const match = /^([01]{3})-([01]{3})-([01]{3})$/.exec(digits);
    if (!match) return null;
    const [owner, group, others] = match
        .slice(1)
        .map((three) => ({
            read: three[0] === '1',
            write: three[1] === '1',
            execute: three[2] === '1',
        }));
    return { owner: owner!, group: group!, others: others! };
}

/** The user that the assistant runs for, by its environment; null when it does not tell. */
export function userOf(variables: Variable[]): string | null {
    const value = (name: string): string =>
        variables.find((variable) => variable.name === name)?.value ?? '';
    return value('USER') || value('LOGNAME') || null;
}

function takeOver(file: FilePermissions): string {
    const recursive = isKnown(file) && isDirectory(file) ? '-R ' : '';
    return `sudo chown ${recursive}"$(id -un):$(id -gn)" ${shellWord(file)}`;
}

function commandsFor(verdict: VerdictName, file: FilePermissions): string[] {
    const directory = isDirectory(file);
    const modes: Partial<Record<VerdictName, string>> = {
        unreadable: directory ? 'u+rwx' : 'u+rw',
        readOnly: 'u+w',
        closed: 'u+x',
        open: 'o-w',
    };
    const mode = modes[verdict];
    if (mode) return [`chmod ${mode} ${shellWord(file)}`];
    return verdict.startsWith('foreign') || verdict.startsWith('nameless') ? [takeOver(file)] : [];
}

function judgedByDoctor(file: FilePermissions, { findings, skipped }: Found): Verdict {
    const end = knownPath(file.name)!.slice('~'.length);
    const finding = findings.find(({ where }) => where.some(({ path }) => path.endsWith(end)));
    if (!finding) {
        return skipped
            ? { name: 'root', state: 'plain', commands: [] }
            : { name: 'good', state: 'good', commands: [] };
    }
    const verdict = verdictsOfChecks[finding.check.split('.')[1]!] ?? 'unclear';
    return {
        name: verdict,
        state: judged(finding.state),
        text: finding.text,
        commands: commandsFor(verdict, file),
    };
}

/** What the kernel grants counts, whatever the permissions look like. */
function judgedByAccess(
    file: FilePermissions,
    { verdict, text }: AccessReason,
    found: Found | null,
): Verdict {
    if (verdict === 'denied') return { name: 'denied', state: 'bad', text, commands: [] };
    if (verdict === 'undecided') return { name: 'unclear', state: 'plain', text, commands: [] };
    if (!isKnown(file)) return { name: 'granted', state: 'good', text, commands: [] };
    const looks = judgedByDoctor(file, found ?? { findings: [], skipped: false });
    return looks.state === 'bad' ? { name: 'granted', state: 'good', text, commands: [] } : looks;
}

function judgeOwn(file: FilePermissions, { owner, others }: AllRights): Verdict {
    const directory = isDirectory(file);
    const verdict = (found: VerdictName, state: Judged): Verdict => ({
        name: found,
        state,
        commands: commandsFor(found, file),
    });
    if (!owner.read) return verdict('unreadable', 'bad');
    if (!owner.write) return verdict('readOnly', 'bad');
    if (directory && !owner.execute) return verdict('closed', 'bad');
    return others.write ? verdict('open', 'warning') : verdict('good', 'good');
}

function judgeForeign(file: FilePermissions, { others }: AllRights): Verdict {
    const owner = file.owner === '' ? 'nameless' : 'foreign';
    const name: VerdictName = others.write ? `${owner}Open` : owner;
    const state = others.write ? 'warning' : 'bad';
    return { name, state, commands: commandsFor(name, file) };
}

/**
 * Whether the suite of `user` can read and change the path, and the fix if not. What the doctor
 * has looked at is as it has found it, or as `reason` explains it.
 */
export function judge(
    file: FilePermissions,
    user: string | null,
    found: Found | null = null,
    reason?: AccessReason,
): Verdict {
    if (!file.exists) return { name: 'missing', state: 'plain', commands: [] };
    if (reason) return judgedByAccess(file, reason, found);
    const rights = rightsOf(file.permissions);
    if (!rights) return { name: 'unclear', state: 'plain', commands: [] };
    if (found && isKnown(file)) return judgedByDoctor(file, found);
    if (user === 'root') return { name: 'root', state: 'plain', commands: [] };
    const own = user === null || file.owner === user;
    if (file.owner === '' || !own) return judgeForeign(file, rights);
    const verdict = judgeOwn(file, rights);
    return verdict.name === 'good' && user === null
        ? { ...verdict, name: 'unknownUser', state: 'plain' }
        : verdict;
}

const urgency: Judged[] = ['bad', 'warning', 'plain', 'good'];

/** The files, those that need a fix first, otherwise in their order. */
export function byUrgency(
    files: FilePermissions[],
    user: string | null,
    found: Found | null = null,
    reasons: AccessReasons = new Map(),
): FilePermissions[] {
    const rank = (file: FilePermissions): number =>
        urgency.indexOf(judge(file, user, found, reasons.get(keyOf(file))).state);
    return [...files].sort((first, second) => rank(first) - rank(second));
}
