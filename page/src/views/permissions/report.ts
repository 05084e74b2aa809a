import type { AccessReason, FilePermissions, PathPart } from '@/client';
import type { Translate } from '@/frame/texts';
import { rightsText as modeLetters } from '@/changes/difflines';
import { visibleText } from '@/parts/visibletext';
import type { Found } from '@/tasks/findings';
import { judge, keyOf, pathOf, rightsOf, type AccessReasons, type Rights } from './judge';

function granted({ read, write, execute }: Rights, t: Translate): string {
    const words = [
        read ? t('permissions.rights.read') : '',
        write ? t('permissions.rights.write') : '',
        execute ? t('permissions.rights.execute') : '',
    ].filter(Boolean);
    return words.join(t('permissions.rights.and')) || t('permissions.rights.nothing');
}

const kindLetters: Record<string, string> = { directory: 'd', link: 'l' };

/** As ls(1) and chmod(1) write them: "drwxr-x--- (0750)". */
export function partRights({ kind, mode }: Pick<PathPart, 'kind' | 'mode'>): string {
    return `${kindLetters[kind] ?? '-'}${modeLetters(mode)} (${mode})`;
}

/** "110-100-100" in words; empty for anything else. */
export function rightsText(digits: string, t: Translate): string {
    const rights = rightsOf(digits);
    if (!rights) return '';
    return t('permissions.rights.all', {
        owner: granted(rights.owner, t),
        group: granted(rights.group, t),
        others: granted(rights.others, t),
    });
}

/** What the view says about a path. */
export function verdictText(
    file: FilePermissions,
    user: string | null,
    t: Translate,
    found: Found | null = null,
    reason?: AccessReason,
): string {
    const { name, text } = judge(file, user, found, reason);
    if (text !== undefined) return visibleText(text);
    return t(`permissions.verdicts.${name}.text`, {
        owner: visibleText(file.owner),
        user: visibleText(user ?? ''),
    });
}

function factsText(file: FilePermissions, moment: (date: Date) => string): string {
    const { owner, group, mode, kind, permissions, modified, changed } = file;
    const rights = mode && kind !== undefined ? partRights({ kind, mode }) : permissions;
    const time = changed ? moment(changed) : modified;
    return `  ${visibleText(owner)}:${visibleText(group)}  ${rights}  ${time}`;
}

/** The list as text to paste. */
export function listText(
    files: FilePermissions[],
    user: string | null,
    t: Translate,
    found: Found | null = null,
    reasons: AccessReasons = new Map(),
    moment: (date: Date) => string = String,
): string {
    return files
        .map((file) => {
            const facts = file.exists ? factsText(file, moment) : '';
            const verdict = verdictText(file, user, t, found, reasons.get(keyOf(file)));
            const shown = file.path === undefined ? file.name : pathOf(file)!;
            return `${visibleText(shown)}${facts}\n    ${verdict}`;
        })
        .join('\n');
}
