import { fileURLToPath } from 'node:url';
import vue from '@vitejs/plugin-vue';
import { build } from 'vite';

const pageDirectory = fileURLToPath(new URL('..', import.meta.url));
const sourceDirectory = fileURLToPath(new URL('../src', import.meta.url));

/** The browser that the window embeds; nothing newer may reach the output. */
const target = 'chrome87';

/** Lets a module that is no file be the entry. */
const madeModule = (entry, content) => ({
    name: 'made-module',
    enforce: /** @type {const} */ ('pre'),
    resolveId: (id) => (id === entry ? entry : null),
    load: (id) => (id === entry ? content : null),
});

/**
 * Bundles one entry into a classic script and its style sheet, without writing them. `content` is
 * the entry's where there is no such file.
 *
 * `globals` maps the modules that an earlier script of the page provides, by name or file, to the
 * global expressions under which it does.
 *
 * @param {{name: string, entry: string, content?: string, globalName: string,
 *     globals?: Record<string, string>}} options
 */
export async function bundle({ name, entry, content, globalName, globals = {} }) {
    const built = await build({
        root: pageDirectory,
        configFile: false,
        publicDir: false,
        logLevel: 'warn',
        plugins: [...(content === undefined ? [] : [madeModule(entry, content)]), vue()],
        // Chromium keeps a script of ASCII alone in half the memory.
        esbuild: { charset: 'ascii' },
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
            rollupOptions: {
                external: (id) => id in globals,
                makeAbsoluteExternalsRelative: false,
                output: { globals, extend: false, interop: 'esModule', freeze: false },
            },
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
