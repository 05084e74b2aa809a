import { fileURLToPath } from 'node:url';
import vue from '@vitejs/plugin-vue';
import { build } from 'vite';

const pageDirectory = fileURLToPath(new URL('..', import.meta.url));
const sourceDirectory = fileURLToPath(new URL('../src', import.meta.url));

/** The browser that the window embeds; nothing newer may reach the output. */
const target = 'chrome87';

/**
 * Bundles one entry into a classic script and its style sheet, without writing them.
 *
 * `globals` maps the modules that an earlier script of the page provides to the global
 * expressions under which it does.
 */
export async function bundle({ name, entry, globalName, globals = {} }) {
    const built = await build({
        root: pageDirectory,
        configFile: false,
        publicDir: false,
        logLevel: 'warn',
        plugins: [vue()],
        resolve: { alias: { '@': sourceDirectory } },
        define: {
            'process.env.NODE_ENV': '"production"',
            __VUE_OPTIONS_API__: 'true',
            __VUE_PROD_DEVTOOLS__: 'false',
            __VUE_PROD_HYDRATION_MISMATCH_DETAILS__: 'false',
            __VUE_I18N_FULL_INSTALL__: 'false',
            __VUE_I18N_LEGACY_API__: 'false',
            __INTLIFY_PROD_DEVTOOLS__: 'false',
            __INTLIFY_DROP_MESSAGE_COMPILER__: 'false',
        },
        build: {
            target,
            cssTarget: target,
            minify: 'esbuild',
            write: false,
            reportCompressedSize: false,
            modulePreload: false,
            lib: {
                entry,
                formats: ['iife'],
                name: globalName,
                fileName: () => `${name}.js`,
                cssFileName: name,
            },
            rollupOptions: { external: Object.keys(globals), output: { globals, extend: false } },
        },
    });
    // A library in one format gives a list of one.
    const [{ output }] = /** @type {import('vite').Rollup.RollupOutput[]} */ (built);
    const chunk = output.find((item) => item.type === 'chunk');
    const style = output.find((item) => item.type === 'asset' && item.fileName.endsWith('.css'));
    return {
        name,
        script: chunk.code,
        style: style?.type === 'asset' ? String(style.source) : '',
        imports: chunk.imports,
        modules: Object.keys(chunk.modules),
    };
}
