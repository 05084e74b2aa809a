import { defineConfig } from 'vitest/config';

export default defineConfig({
    test: {
        include: ['**/*.test.mjs'],
        testTimeout: 60_000,
        hookTimeout: 60_000,
        // A window on a machine that is busy with something else may miss a bound once.
        retry: 1,
        // Many sandboxes at once only slow each other down on a small machine.
        maxWorkers: 2,
        minWorkers: 1,
    },
});
