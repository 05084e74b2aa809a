import { defineConfig } from 'vitest/config';

export default defineConfig({
    test: {
        include: ['**/*.test.mjs'],
        // Bounds for what has gone wrong: on a machine that is busy with something else, a window
        // takes many times as long as by itself.
        testTimeout: 240_000,
        hookTimeout: 240_000,
        // Many sandboxes at once only slow each other down on a small machine.
        maxWorkers: 2,
        minWorkers: 1,
    },
});
