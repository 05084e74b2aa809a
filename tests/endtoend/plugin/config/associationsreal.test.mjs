import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import {
    entries,
    installRealDesktop,
    integrated,
    samples,
    setMode,
    templates,
    typeOf,
    writeSamples,
} from './desktoptools.mjs';
import { lines, runScript } from './scriptrunner.mjs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await writeSamples(root, (suffix) => `a sample of ${suffix}\n`);
});

afterEach(async () => root.dispose());

const run = async (script, env) => {
    const end = await runScript(root, script, [templates], { env });
    expect(end.stderr).toBe('');
    return lines(end.stdout);
};
const shownEntry = (tag) => (tag === 'vyr' ? 'vyr-office-vyr.dekstop' : entries[tag]);

test('the desktop’s own types are not the suite’s', async () => {
    const found = await run('getmimeinfo.sh');
    expect(found).toHaveLength(39);
    expect(found[0]).toMatch(/^shw\|\.pptx\|[a-z]+\/[^|]+\|false$/);
    expect(found.filter((line) => line.endsWith('|true'))).toEqual([]);
});

test('installed types are found, wherever XDG_DATA_HOME points', async () => {
    await installRealDesktop(root);
    expect(await run('getmimeinfo.sh', { XDG_DATA_HOME: '/nowhere' })).toEqual(
        samples.map(({ tag, suffix }) => `${tag}|${suffix}|${typeOf(suffix)}|true`),
    );
});

test('a repair turns every association into the suite’s', async () => {
    await installRealDesktop(root);
    const setOthers = 'for type; do gio mime "$type" other.desktop; done';
    const types = samples.map(({ suffix }) => typeOf(suffix));
    await root.run(['bash', '-c', setOthers, 'set', ...types]);
    expect((await run('getopeninfo.sh')).every((line) => line.endsWith('||false'))).toBe(true);

    await run('repairasso.sh');
    expect(await run('getopeninfo.sh')).toEqual(
        samples.map(({ tag, suffix }) => `${tag}|${suffix}|${shownEntry(tag)}|true`),
    );

    await setMode(root, 'helio_fushion');
    await run('repairasso.sh', { XDG_DATA_HOME: '/nowhere' });
    expect(await run('getopeninfo.sh')).toEqual(
        samples.map(({ tag, suffix }) => `${tag}|${suffix}|${integrated}|true`),
    );
});
