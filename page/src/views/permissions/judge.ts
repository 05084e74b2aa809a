import type { FilePermissions, Variable } from '@/client';
import type { Judged } from '@/parts/judged';

/** What a path is found to be; each has its sentence under permissions.verdicts. */
type VerdictName =
    | 'missing'
    | 'unclear'
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
    state: Judged;
    /** Terminal commands that fix it; empty when there is nothing to fix. */
    commands: string[];
}

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

/** The path of a listed name; null for an added file. */
export function knownPath(name: string): string | null {
    return Object.prototype.hasOwnProperty.call(knownPaths, name) ? knownPaths[name]!.path : null;
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

function takeOver(name: string): string {
    const path = knownPath(name);
    const recursive = path && knownPaths[name]!.directory ? '-R ' : '';
    return `sudo chown ${recursive}"$(id -un):$(id -gn)" ${path ?? 'FILE'}`;
}

function change(name: string, mode: string): string {
    return `chmod ${mode} ${knownPath(name) ?? 'FILE'}`;
}

function judgeOwn({ name }: FilePermissions, { owner, others }: AllRights): Verdict {
    const directory = knownPath(name) !== null && knownPaths[name]!.directory;
    if (!owner.read) {
        const mode = directory ? 'u+rwx' : 'u+rw';
        return { name: 'unreadable', state: 'bad', commands: [change(name, mode)] };
    }
    if (!owner.write) return { name: 'readOnly', state: 'bad', commands: [change(name, 'u+w')] };
    if (directory && !owner.execute) {
        return { name: 'closed', state: 'bad', commands: [change(name, 'u+x')] };
    }
    if (others.write) return { name: 'open', state: 'warning', commands: [change(name, 'o-w')] };
    return { name: 'good', state: 'good', commands: [] };
}

function judgeForeign(file: FilePermissions, { others }: AllRights): Verdict {
    const commands = [takeOver(file.name)];
    const name = file.owner === '' ? 'nameless' : 'foreign';
    return others.write
        ? { name: `${name}Open`, state: 'warning', commands }
        : { name, state: 'bad', commands };
}

/** Whether the suite of `user` can read and change the path, and the fix if not. */
export function judge(file: FilePermissions, user: string | null): Verdict {
    if (!file.exists) return { name: 'missing', state: 'plain', commands: [] };
    const rights = rightsOf(file.permissions);
    if (!rights) return { name: 'unclear', state: 'plain', commands: [] };
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
export function byUrgency(files: FilePermissions[], user: string | null): FilePermissions[] {
    const rank = (file: FilePermissions): number => urgency.indexOf(judge(file, user).state);
    return [...files].sort((first, second) => rank(first) - rank(second));
}
