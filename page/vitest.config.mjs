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
        testTimeout: 20_000,
        hookTimeout: 60_000,
        // A browser on a machine that is busy with something else may miss a bound once.
        retry: 1,
    },
});
