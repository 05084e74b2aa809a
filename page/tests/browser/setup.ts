import { Chromium } from 'browser-driver';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import type { TestProject } from 'vitest/node';

declare module 'vitest' {
    interface ProvidedContext {
        /** Where the page is built, once for all tests. */
        builtPage: string;
        /** The port of the developer tools of the one Chromium that all tests share. */
        browserPort: number;
    }
}

/** Builds the page and starts the browser before the first test, and clears both away. */
export default async function setup(project: TestProject): Promise<() => Promise<void>> {
    const directory = mkdtempSync(join(tmpdir(), 'page-build-'));
    const root = fileURLToPath(new URL('../..', import.meta.url));
    // The tests' own environment would have it built for development.
    const env = { ...process.env, NODE_ENV: 'production', VITEST: '' };
    execFileSync('node', ['build/build.mjs', '--outDir', directory], { cwd: root, env });
    const browser = await Chromium.start();
    project.provide('builtPage', directory);
    project.provide('browserPort', browser.port);
    return async () => {
        await browser.close();
        rmSync(directory, { recursive: true });
    };
}
