import { spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { describe, expect, inject, it } from 'vitest';
import { unsupportedInScript, unsupportedInStyle } from '../build/compatibility.mjs';
import { catalogues, textsScript } from '../build/texts.mjs';

const page = fileURLToPath(new URL('..', import.meta.url));
const directory = inject('builtPage');
const read = (file: string): string => readFileSync(join(directory, file), 'utf8');
const sharedFiles = [
    'foundation.js',
    'elements.js',
    'elements.css',
    'frame.js',
    'frame.css',
    'toolframe.js',
    'toolframe.css',
];
const pages = readdirSync(directory).filter((file) => file.endsWith('.html'));

describe('the built page', () => {
    it('has the first page, one for each other view, the plug-in check and the waiting page', () => {
        const views = readdirSync(join(page, 'src/views'));
        const expected = views.map((view) => (view === 'home' ? 'index.html' : `${view}.html`));
        expect([...pages].sort()).toEqual(
            [...expected, 'vyrNpEnvCheck.html', 'waiting.html'].sort(),
        );
    });

    it('loads only classic scripts and styles of its own', () => {
        for (const file of pages) {
            const html = read(file);
            expect(html).not.toMatch(/type="?module|crossorigin|\/\/[a-z]/i);
            for (const [, name] of html.matchAll(/(?:src|href)="([^"]+)"/g)) {
                expect(readdirSync(directory)).toContain(name);
            }
        }
    });

    it('allows its inline head pieces by their hashes and nothing that connects', () => {
        for (const file of pages) {
            const html = read(file);
            const policy = /http-equiv="Content-Security-Policy" content="([^"]+)"/.exec(html)![1];
            for (const tag of ['style', 'script']) {
                const inline = new RegExp(`<${tag}>([^]*?)</${tag}>`).exec(html)![1]!;
                expect(policy).toContain(createHash('sha256').update(inline).digest('base64'));
            }
            expect(policy).toContain("default-src 'none'");
            expect(policy).toContain("connect-src 'none'");
            expect(policy).not.toContain('unsafe');
        }
    });

    it('has the plug-in check in one file, because some browsers load no second one', () => {
        expect(read('vyrNpEnvCheck.html')).not.toMatch(/(?:src|href)=/);
        expect(read('vyrNpEnvCheck.html')).not.toContain("'self'");
    });

    it('keeps the home page free of the component library', () => {
        expect(read('index.html')).not.toContain('elements.');
    });

    it('gives a view its texts in both languages, without those of other views', () => {
        const texts = /^window\.pageTexts=(\{.*\});$/m.exec(read('crash.js'))![1]!;
        const byLanguage = JSON.parse(texts) as Record<string, string>;
        expect(Object.keys(byLanguage)).toEqual(['en', 'zh-CN']);
        for (const text of Object.values(byLanguage)) {
            const topics = Object.keys(JSON.parse(text) as object);
            expect(topics).toEqual(['crash']);
        }
    });

    it('has what several views need in one script, with the texts of the frame', () => {
        const scripts = readdirSync(directory).filter((file) => file.endsWith('.js'));
        const having = (text: string): string[] =>
            scripts.filter((file) => read(file).includes(text));
        expect(having('no-host')).toEqual(['frame.js']);
        expect(having('common.refreshKey')).toEqual(['toolframe.js']);
        expect(having('window.frameTexts=')).toEqual(['frame.js']);
        const { common } = JSON.parse(
            readFileSync(join(page, 'src/frame/texts.en.json'), 'utf8'),
        ) as { common: { checkKey: string } };
        expect(having(common.checkKey)).toEqual(['frame.js']);
    });

    it('shares scripts of ASCII alone, which take half the memory', () => {
        for (const file of sharedFiles.filter((name) => name.endsWith('.js'))) {
            expect([file, /[^\0-\x7f]/.exec(read(file))?.[0]]).toEqual([file, undefined]);
        }
    });

    it('waits with all that views share and what shows one, and nothing else', () => {
        const files = [...read('waiting.html').matchAll(/(?:src|href)="([^"]+)"/g)].map(
            (match) => match[1]!,
        );
        expect(files.sort()).toEqual([...sharedFiles, 'waiting.js'].sort());
    });

    it('stays under 400 KB of script and style a view, beyond the shared files', () => {
        for (const file of pages) {
            const own = [...read(file).matchAll(/(?:src|href)="([^"]+)"/g)]
                .map((match) => match[1]!)
                .filter((name) => !sharedFiles.includes(name));
            const size = own.reduce((sum, name) => sum + Buffer.byteLength(read(name)), 0);
            expect(size).toBeLessThan(400 * 1024);
        }
    });

    it('refuses to replace a directory that is not its own', () => {
        const foreign = mkdtempSync(join(tmpdir(), 'page-foreign-'));
        writeFileSync(join(foreign, 'letter.txt'), 'keep me');
        const run = spawnSync('node', ['build/build.mjs', '--outDir', foreign], {
            cwd: page,
            encoding: 'utf8',
        });
        expect(run.status).toBe(1);
        expect(run.stderr).toContain('holds other files');
        expect(readdirSync(foreign)).toEqual(['letter.txt']);
        rmSync(foreign, { recursive: true });
    }, 180_000);
});

describe('the texts of a view', () => {
    const texts = (title: string) => ({
        en: { title, what: 'What', more: 'More' },
        'zh-CN': { title: `${title}中`, what: '做什么', more: '更多' },
    });
    const views = { home: texts('Home'), search: texts('Search'), server: texts('Server') };

    it('are its own, and title and purpose of the views that it offers', () => {
        expect(catalogues(views, 'home', ['search'])).toEqual({
            en: { home: views.home.en, search: { title: 'Search', what: 'What' } },
            'zh-CN': { home: views.home['zh-CN'], search: { title: 'Search中', what: '做什么' } },
        });
    });

    it('reach it as texts that no script can break out of', () => {
        const english = { home: { title: 'a "quoted" \\ line\n中文😀' } };
        const scope = { pageTexts: {} as Record<string, string> };
        new Function('window', textsScript('pageTexts', { en: english }) as string)(scope);
        expect(JSON.parse(scope.pageTexts.en!)).toEqual(english);
    });
});

describe('the check for what Chromium 87 lacks', () => {
    it.each([
        ['x.at(-1)', 'at()'],
        ['structuredClone(x)', 'structuredClone'],
        ['Object.hasOwn(a,b)', 'Object.hasOwn'],
        ['crypto.randomUUID()', 'crypto.randomUUID'],
        ['AbortSignal.timeout(5)', 'AbortSignal.timeout'],
        ['import("./x.js")', 'dynamic import'],
        ['class A{static{this.x=1}}', 'class static block'],
        ['new Function("return 1")', 'evaluated text'],
    ])('finds %s', (script, feature) => {
        expect(unsupportedInScript(script)).toContain(feature);
    });

    it.each([
        ['a:is(b,c){color:red}', ':is()'],
        ['a:where(b){color:red}', ':where()'],
        ['a:has(b){color:red}', ':has()'],
        ['a:not(b,c){color:red}', ':not() of a list'],
        ['a{aspect-ratio:1}', 'aspect-ratio'],
        ['a{accent-color:red}', 'accent-color'],
        ['@container x (width>1px){a{color:red}}', '@container'],
        ['a{color:color-mix(in srgb,red,blue)}', 'color-mix()'],
    ])('finds %s', (style, feature) => {
        expect(unsupportedInStyle(style)).toContain(feature);
    });

    it('lets plain code through', () => {
        expect(unsupportedInScript('a.atlas(1);b?.c??=d;[...at(e)]')).toEqual([]);
        expect(unsupportedInStyle('a:not(.b):focus-visible{inset:0;gap:1px}')).toEqual([]);
    });
});
