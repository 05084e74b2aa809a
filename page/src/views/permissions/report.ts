import type { FilePermissions } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';
import type { Found } from '@/tasks/findings';
import { judge, rightsOf, type Rights } from './judge';

function granted({ read, write, execute }: Rights, t: Translate): string {
    const words = [
        read ? t('permissions.rights.read') : '',
        write ? t('permissions.rights.write') : '',
        execute ? t('permissions.rights.execute') : '',
    ].filter(Boolean);
    return words.join(t('permissions.rights.and')) || t('permissions.rights.nothing');
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
): string {
    const { name, text } = judge(file, user, found);
    if (text !== undefined) return visibleText(text);
    return t(`permissions.verdicts.${name}.text`, {
        owner: visibleText(file.owner),
        user: visibleText(user ?? ''),
    });
}

/** The list as text to paste. */
export function listText(
    files: FilePermissions[],
    user: string | null,
    t: Translate,
    found: Found | null = null,
): string {
    return files
        .map((file) => {
            const { owner, group, permissions, modified } = file;
            const facts = file.exists
                ? `  ${visibleText(owner)}:${visibleText(group)}  ${permissions}  ${modified}`
                : '';
            return `${visibleText(file.name)}${facts}\n    ${verdictText(file, user, t, found)}`;
        })
        .join('\n');
}
