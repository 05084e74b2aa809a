import { fileURLToPath } from 'node:url';
import vue from '@vitejs/plugin-vue';
import { defineConfig } from 'vitest/config';

export default defineConfig({
    root: fileURLToPath(new URL('.', import.meta.url)),
    plugins: [vue()],
    resolve: { alias: { '@': fileURLToPath(new URL('src', import.meta.url)) } },
    test: {
        include: ['tests/**/*.test.ts'],
        globalSetup: ['tests/browser/setup.ts'],
        maxConcurrency: 3,
        // Only what hangs reaches these bounds, also on a machine that is busy with other work.
        testTimeout: 120_000,
        hookTimeout: 120_000,
    },
});
