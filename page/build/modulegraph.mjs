import { existsSync, readFileSync } from 'node:fs';
import { dirname, join } from 'node:path';

/** Imports and re-exports with a value; those of types alone leave nothing in a bundle. */
const importLine = /^\s*(?:import|export)\s+(?!type\b)(?:[^'";]*?\sfrom\s+)?'([^']+)'/gm;

/** The file that an import of our own means; undefined for one of a package. */
function fileOf(name, importer, source) {
    if (!/^(\.|@\/)/.test(name)) return undefined;
    const path = name.startsWith('@/')
        ? join(source, name.slice(2))
        : join(dirname(importer), name);
    return [path, `${path}.ts`, join(path, 'index.ts')].find(
        (file) => /\.(ts|vue)$/.test(file) && existsSync(file),
    );
}

/** The modules of our own that a module reaches, itself included. */
function reachedFrom(entry, source) {
    const reached = new Set();
    const waiting = [entry];
    while (waiting.length) {
        const file = waiting.pop();
        if (reached.has(file)) continue;
        reached.add(file);
        for (const [, name] of readFileSync(file, 'utf8').matchAll(importLine)) {
            const imported = fileOf(name, file, source);
            if (imported) waiting.push(imported);
        }
    }
    return reached;
}

/**
 * The modules that more than one view needs, outside of the views' own folders: those that need
 * none of the component library, and those that do.
 */
export function sharedModules(entries, source) {
    const uses = new Map();
    for (const entry of entries) {
        for (const module of reachedFrom(entry, source)) {
            uses.set(module, (uses.get(module) ?? 0) + 1);
        }
    }
    const elements = join(source, 'elements/');
    const views = join(source, 'views/');
    const shared = [...uses]
        .filter(([module, count]) => count > 1 && !module.startsWith(views))
        .map(([module]) => module)
        .filter((module) => !module.startsWith(elements))
        .sort();
    const needsElements = (module) =>
        [...reachedFrom(module, source)].some((reached) => reached.startsWith(elements));
    return {
        plain: shared.filter((module) => !needsElements(module)),
        withElements: shared.filter(needsElements),
    };
}
