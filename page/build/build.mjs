import { mkdir, readFile, readdir, rm, writeFile } from 'node:fs/promises';
import { join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { build as buildScript, transform } from 'esbuild';
import { bundle } from './bundle.mjs';
import { unsupportedInScript, unsupportedInStyle } from './compatibility.mjs';
import { htmlPage } from './htmlpage.mjs';
import { sharedModules } from './modulegraph.mjs';
import { collectNotices } from './notices.mjs';
import { pluginCheckPage } from './plugincheck.mjs';
import { catalogues, textsIn, textsOfViews, textsScript } from './texts.mjs';

const source = fileURLToPath(new URL('../src', import.meta.url));
const licence = fileURLToPath(new URL('../../LICENSES/MIT.txt', import.meta.url));

/** Scripts of the libraries, in loading order, with what they provide to later ones. */
const libraries = [
    {
        name: 'foundation',
        globalName: 'PageFoundation',
        provides: { vue: 'PageFoundation.Vue', 'vue-i18n': 'PageFoundation.VueI18n' },
    },
    { name: 'elements', globalName: 'PageElements', provides: { '@/elements': 'PageElements' } },
];

/** Scripts that only one view needs, before its own. */
const extraScripts = { about: ['notices.js'] };

/** The home page is the one that the host opens first; every other view is named as its folder. */
function pageFile(view) {
    return view === 'home' ? 'index.html' : `${view}.html`;
}

const entryOf = (view) => join(source, 'views', view, 'main.ts');

/** A script of several modules: each is a member of its global, under which views find it. */
function scriptOf(name, globalName, modules) {
    const numbered = modules.map((file, index) => [file, `m${index}`]);
    return {
        name,
        globalName,
        entry: join(source, `${name}.js`),
        content: numbered
            .map(([file, member]) => `export * as ${member} from ${JSON.stringify(file)};`)
            .join('\n'),
        provides: Object.fromEntries(
            numbered.map(([file, member]) => [file, `${globalName}.${member}`]),
        ),
    };
}

/** What views share, so that the page that waits for one reads it once. */
async function bundleShared(views, frameTexts) {
    const { plain, withElements } = sharedModules(views.map(entryOf), source);
    /** @type {Record<string, string>} */
    const globals = {};
    const bundles = [];
    for (const { provides, ...script } of [
        ...libraries.map((library) => ({
            ...library,
            entry: join(source, library.name, 'index.ts'),
        })),
        scriptOf('frame', 'PageFrame', plain),
        scriptOf('toolframe', 'PageToolFrame', withElements),
    ]) {
        bundles.push({ ...(await bundle({ ...script, globals: { ...globals } })), provides });
        Object.assign(globals, provides);
    }
    const frame = bundles.find(({ name }) => name === 'frame');
    frame.script = textsScript('frameTexts', frameTexts) + frame.script;
    return { bundles, globals };
}

/** The shared scripts that a script needs, those included that they need in turn. */
function neededBundles(bundles, imports) {
    const provides = (bundle, names) =>
        Object.keys(bundle.provides).some((module) => names.includes(module));
    const needed = bundles.filter((bundle) => provides(bundle, imports));
    const further = needed.flatMap((bundle) => bundle.imports);
    return bundles.filter((bundle) => needed.includes(bundle) || provides(bundle, further));
}

async function headPieces() {
    const style = await readFile(join(source, 'frame/critical.css'), 'utf8');
    const options = { target: 'chrome87', minify: true };
    const minifiedStyle = await transform(style, { ...options, loader: 'css' });
    const script = await buildScript({
        ...options,
        entryPoints: [join(source, 'frame/boot.ts')],
        bundle: true,
        format: 'iife',
        write: false,
    });
    return {
        criticalStyle: minifiedStyle.code.trim(),
        bootScript: script.outputFiles[0].text.trim(),
        outline: (await readFile(join(source, 'frame/outline.html'), 'utf8')).trim(),
    };
}

/** A view's script, which the page that waits reads without running it. */
function viewScript(page, script) {
    return `addView(${JSON.stringify(page)},function(){\n${script}\n});\n`;
}

/** The script of the waiting page, which can show each of the views. */
async function waitingScript(viewFiles) {
    const script = await buildScript({
        entryPoints: [join(source, 'frame/waiting.ts')],
        define: { filesOfViews: JSON.stringify(viewFiles) },
        bundle: true,
        format: 'iife',
        target: 'chrome87',
        minify: true,
        write: false,
    });
    return script.outputFiles[0].text;
}

function titlesOf(texts, view) {
    return Object.fromEntries(
        Object.entries(texts).map(([language, { title }]) => {
            if (!title) throw new Error(`no title for the view "${view}" in ${language}`);
            return [language, title];
        }),
    );
}

/** The other views that a view offers: those whose tool.ts is among its modules. */
function offeredBy(modules) {
    const tool = new RegExp(`^${source}/views/([^/]+)/tool\\.ts$`);
    return modules.flatMap((module) => tool.exec(module)?.[1] ?? []);
}

/** The file with all licence notices, and the script that brings it into the About view. */
async function addNotices(files, modules, version) {
    const notices = await collectNotices(licence, modules);
    files.set('notices.txt', notices);
    files.set('notices.js', `window.about=${JSON.stringify({ version, notices })};\n`);
}

/** All files of the page, by name. */
async function buildFiles(version) {
    const files = new Map();
    const addBundle = ({ name, script, style }) => {
        files.set(`${name}.js`, script);
        if (style) files.set(`${name}.css`, style);
    };
    const views = await textsOfViews();
    const { bundles, globals } = await bundleShared(Object.keys(views), await textsIn('frame'));
    bundles.forEach(addBundle);
    const modules = bundles.flatMap((shared) => shared.modules);
    const head = await headPieces();
    const viewFiles = {};
    for (const view of Object.keys(views)) {
        const entry = entryOf(view);
        const own = await bundle({ name: view, entry, globalName: 'PageView', globals });
        const offered = catalogues(views, view, offeredBy(own.modules));
        const texts = textsScript('pageTexts', offered);
        addBundle({ ...own, script: viewScript(pageFile(view), texts + own.script) });
        modules.push(...own.modules);
        const parts = [...neededBundles(bundles, own.imports), own];
        const extra = extraScripts[view] ?? [];
        files.set(
            pageFile(view),
            htmlPage({
                ...head,
                titles: titlesOf(views[view], view),
                scripts: [...extra, ...parts.map(({ name }) => `${name}.js`)],
                styles: parts.filter(({ style }) => style).map(({ name }) => `${name}.css`),
            }),
        );
        if (view === 'home') continue;
        viewFiles[pageFile(view)] = {
            scripts: [...extra, `${own.name}.js`],
            styles: own.style ? [`${own.name}.css`] : [],
        };
    }
    const rehearsal = await bundle({
        name: 'rehearsal',
        entry: join(source, 'rehearsal/main.ts'),
        globalName: 'PageView',
        globals,
    });
    files.set('rehearsal.js', viewScript('rehearsal', rehearsal.script));
    files.set('waiting.js', await waitingScript(viewFiles));
    // In it a window waits for its first view: Chromium has then read what all views share.
    files.set(
        'waiting.html',
        htmlPage({
            ...head,
            outline: '',
            titles: titlesOf(views.home, 'home'),
            scripts: [...bundles.map(({ name }) => `${name}.js`), 'waiting.js'],
            styles: bundles.filter(({ style }) => style).map(({ name }) => `${name}.css`),
        }),
    );
    await addNotices(files, modules, version);
    // The library hands this very name to the user's browser.
    files.set('vyrNpEnvCheck.html', await pluginCheckPage());
    return files;
}

function checkFiles(files) {
    const problems = [];
    for (const [name, content] of files) {
        const found = name.endsWith('.js')
            ? unsupportedInScript(content, name.slice(0, -3))
            : name.endsWith('.css')
              ? unsupportedInStyle(content)
              : [];
        if (found.length) problems.push(`${name}: ${found.join(', ')}`);
    }
    if (problems.length) {
        throw new Error(
            `The embedded Chromium 87 lacks what these files use:\n${problems.join('\n')}`,
        );
    }
}

/** A directory that is emptied has to be new, empty or an earlier build. */
async function checkDirectory(directory) {
    const present = await readdir(directory).catch(() => []);
    if (present.length && !present.includes('index.html')) {
        throw new Error(`${directory} holds other files; name a directory of the page's own`);
    }
}

async function writeFiles(files, directory) {
    await rm(directory, { recursive: true, force: true });
    await mkdir(directory, { recursive: true });
    for (const [name, content] of files) await writeFile(join(directory, name), content);
}

const { values } = parseArgs({
    options: {
        outDir: { type: 'string', default: 'dist' },
        /** What the About view says. */
        version: { type: 'string', default: 'development' },
    },
});
const directory = resolve(values.outDir);
try {
    await checkDirectory(directory);
    const files = await buildFiles(values.version);
    checkFiles(files);
    await writeFiles(files, directory);
    for (const [name, content] of files) {
        console.log(`${String(Buffer.byteLength(content)).padStart(8)} ${name}`);
    }
} catch (error) {
    console.error(error instanceof Error ? error.message : error);
    process.exitCode = 1;
}
