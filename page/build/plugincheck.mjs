import { readFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { build, transform } from 'esbuild';
import { escapeHtml, hashSource } from './htmlpage.mjs';
import { textsIn } from './texts.mjs';

const source = fileURLToPath(new URL('../src', import.meta.url));

/** Old browsers are those that still have plug-ins. */
const target = 'es2015';

/**
 * The plug-in check as one file: for some browsers, no other file of a directory has the same
 * origin. Style and script are therefore in it, allowed by their hashes.
 */
export async function pluginCheckPage() {
    const pluginTexts = await textsIn('plugincheck');
    const bundled = await build({
        entryPoints: [`${source}/plugincheck/page.ts`],
        bundle: true,
        format: 'iife',
        minify: true,
        charset: 'utf8',
        target,
        write: false,
        tsconfig: fileURLToPath(new URL('../tsconfig.json', import.meta.url)),
        define: { catalogues: JSON.stringify(pluginTexts) },
    });
    const script = bundled.outputFiles[0].text.trim();
    const sheet = await readFile(`${source}/plugincheck/page.css`, 'utf8');
    const style = (await transform(sheet, { loader: 'css', minify: true })).code.trim();
    const policy = [
        "default-src 'none'",
        `script-src ${hashSource(script)}`,
        `style-src ${hashSource(style)}`,
        "connect-src 'none'",
        "base-uri 'none'",
        "form-action 'none'",
    ].join('; ');
    return [
        '<!DOCTYPE html>',
        '<html lang="en">',
        '<head>',
        '<meta charset="utf-8">',
        `<meta http-equiv="Content-Security-Policy" content="${policy}">`,
        '<meta name="viewport" content="width=device-width, initial-scale=1">',
        `<title>${escapeHtml(pluginTexts.en.title)}</title>`,
        `<style>${style}</style>`,
        `<script>${script}</script>`,
        '</head>',
        '<body>',
        (await readFile(`${source}/plugincheck/page.html`, 'utf8')).trim(),
        '</body>',
        '</html>',
        '',
    ].join('\n');
}
