import { execFileSync } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { chromium } from 'playwright-core';
import type { TestProject } from 'vitest/node';
import { chromiumFlags, chromiumPath } from './harness.mjs';

declare module 'vitest' {
    interface ProvidedContext {
        /** Where the page is built, once for all tests. */
        builtPage: string;
        /** The address of the one Chromium that all tests share. */
        browserAddress: string;
    }
}

/** Builds the page and starts the browser before the first test, and clears both away. */
export default async function setup(project: TestProject): Promise<() => Promise<void>> {
    const directory = mkdtempSync(join(tmpdir(), 'page-build-'));
    const root = fileURLToPath(new URL('../..', import.meta.url));
    // The tests' own environment would have it built for development.
    const env = { ...process.env, NODE_ENV: 'production', VITEST: '' };
    execFileSync('node', ['build/build.mjs', '--outDir', directory], { cwd: root, env });
    const server = await chromium.launchServer({
        executablePath: chromiumPath,
        args: chromiumFlags,
        timeout: 30_000,
    });
    project.provide('builtPage', directory);
    project.provide('browserAddress', server.wsEndpoint());
    return async () => {
        await server.close();
        rmSync(directory, { recursive: true });
    };
}
