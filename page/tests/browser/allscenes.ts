import { readdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import type { Scene } from './harness.mjs';

/** The scenes of all views, in the order of the views' names. */
export async function allScenes(): Promise<Scene[]> {
    const scenes: Scene[] = [];
    const folder = fileURLToPath(new URL('scenes', import.meta.url));
    for (const file of readdirSync(folder).sort()) {
        const view = file.replace(/\.mjs$/, '');
        const module = (await import(`./scenes/${view}.mjs`)) as { scenes: Scene[] };
        scenes.push(...module.scenes);
    }
    return scenes;
}
