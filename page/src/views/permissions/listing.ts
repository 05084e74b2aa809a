import type { Client, FilePermissions, Outcome } from '@/client';
import { knownPath, standardPaths } from './judge';

const storageKey = 'assistant.permissions.added';

/** As long as the window lives, and not longer. */
function stored(): string[] {
    try {
        const list: unknown = JSON.parse(sessionStorage.getItem(storageKey) ?? '[]');
        return Array.isArray(list) ? list.filter((one) => typeof one === 'string') : [];
    } catch {
        return [];
    }
}

/** What there is no more of where the suite that is looked after is another one. */
const isOwn = ({ name, path }: FilePermissions) => knownPath(name) === path && path !== '~/.config';

/**
 * The paths of the view: the suite's and those that were added. A shell that looks at paths itself
 * tells all of each; the library only knows names.
 */
export function listing(client: Client) {
    const looksItself = client.paths.isOffered;

    /** The settings of the suite that is looked after; empty where none is known. */
    async function settingsPaths(): Promise<string[]> {
        if (!client.suite.isOffered) return [];
        const suite = await client.suite.describe('');
        const profile = (suite.kind === 'done' && suite.value.state?.profile.path) || '';
        return profile ? [profile, `${profile}/registrymodifications.xcu`] : [];
    }

    async function readPaths(): Promise<Outcome<FilePermissions[]>> {
        const settings = await settingsPaths();
        const read = await client.paths.read([...settings, ...standardPaths, ...stored()]);
        if (settings.length === 0 || read.kind !== 'done') return read;
        return { ...read, value: read.value.filter((one) => one.exists || !isOwn(one)) };
    }

    async function addPath(): Promise<Outcome<boolean>> {
        const chosen = await client.paths.choose();
        if (chosen.kind !== 'done') return chosen;
        const added = stored();
        const isNew = !added.includes(chosen.value);
        if (isNew) sessionStorage.setItem(storageKey, JSON.stringify([...added, chosen.value]));
        return { kind: 'done', value: isNew };
    }

    return {
        looksItself,
        read: (): Promise<Outcome<FilePermissions[]>> =>
            looksItself ? readPaths() : client.configurationFiles(),
        /** Answers whether it was not in the list; null where nobody knows before it is read. */
        add: async (): Promise<Outcome<boolean | null>> => {
            if (looksItself) return addPath();
            const added = await client.addConfigurationFile();
            return added.kind === 'done' ? { kind: 'done', value: null } : added;
        },
    };
}
