/**
 * Views in Debian's Chromium over a scripted host, for the tests and for the screenshots.
 *
 * An answer of the host is an envelope ({ result } or {}), or one of
 * - { never: true }: the host does not answer;
 * - { late: true, result }: it answers when the page's answerLate() has been called;
 * - { refused: reason }: it does not take the call;
 * - any of these with notices: [{ callback, result, after }], which follow the answer;
 * - any of these with lines: [...], which an operation of the shell says before its answer;
 * - a list of these: one for each call in turn, the last one for all further calls.
 */
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';

const axeSource = readFileSync(
    createRequire(import.meta.url).resolve('axe-core/axe.min.js'),
    'utf8',
);

/** What every view calls and no scene cares about. */
const commonAnswers = {
    copytoclipboard: { result: 'success' },
    router: { result: 'success' },
    feedbacktovyr: {},
    mousePress: {},
    mouseRelease: {},
    closemainwindow: {},
    showminimized: {},
    closechildwindow: {},
};

/** What the shell itself offers; the last ones only in scenes that are `explained` or `watched`. */
const doctorOperations = [
    'list',
    'look',
    'checkups',
    'plan',
    'fix',
    'undo',
    'history',
    'cancel',
].map((name) => `doctor.${name}`);
const whyOperations = ['open', 'denied', 'input'].map((name) => `why.${name}`);
/** Of a shell that shows a view beside the main page, for a scene that is `beside` one. */
const windowOperations = ['leave', 'maximise', 'sidebar', 'state'].map((name) => `window.${name}`);
const suiteOperations = ['describe', 'choose', 'plan', 'start'].map((name) => `suite.${name}`);
const checkOperations = ['task.cancel', 'task.check', 'task.findings'];
const reportOperations = ['task.cancel', 'task.compare'];
const measureOperations = ['task.cancel', 'task.start'];
const processOperations = ['task.processes', 'task.programs', 'task.end', 'task.cancel'];
const openingOperations = ['task.associations', 'task.associate', 'task.cancel'];
const pathOperations = ['task.paths', 'task.choose', 'task.listing', 'task.cancel'];
const dumpOperations = ['task.dumps', 'task.dumpfolder'];
const draftOperations = ['draft.keep', 'draft.read'];
const watchOperations = ['preview', 'watch', 'watched'].map((name) => `doctor.${name}`);

/** The window of a scene beside a view, whose page is what the scene names. */
function windowAnswers({ beside = '' }) {
    const result = { view: beside, maximised: false, last: '' };
    return Object.fromEntries(windowOperations.map((name) => [name, { result }]));
}

/** Runs in the page, before its own scripts. */
function installHost({ theme, language, textSize, answers, operations }) {
    const preferences = { theme: 'system', language: 'system', textSize };
    if (!localStorage.getItem('assistant.preferences')) {
        localStorage.setItem('assistant.preferences', JSON.stringify(preferences));
    }
    const calls = {};
    window.sent = [];
    window.unexpected = [];
    const wait = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));
    const lateIsOver = new Promise((resolve) => {
        window.answerLate = resolve;
    });
    async function notify({ callback, result, after = 0 }) {
        await wait(after);
        window[callback]?.({ result });
    }
    window.helio = {
        theme,
        language,
        operations,
        async call(command, args, listen) {
            window.sent.push({ command, args });
            const scripted = answers[command];
            if (scripted === undefined) {
                window.unexpected.push(command);
                throw new Error(`no such command: ${command}`);
            }
            calls[command] = (calls[command] ?? 0) + 1;
            const answer = Array.isArray(scripted)
                ? scripted[Math.min(calls[command], scripted.length) - 1]
                : scripted;
            const { never, late, refused, notices = [], lines = [], ...envelope } = answer;
            for (const line of lines) listen(line);
            if (never) return new Promise(() => undefined);
            if (late) await lateIsOver;
            if (refused) throw new Error(refused);
            notices.forEach(notify);
            return envelope;
        },
    };
}

/**
 * Opens a view. `directory` is the built page, `scene` names its `page` file and the `answers`;
 * `withoutHost` is for an ordinary browser, `withoutDoctor` for a shell that does not offer it,
 * `watched` for one that watches the library's repairs, `explained` for one that says why,
 * `suited` for one that describes the suite, `measured` for one that measures its start,
 * `beside` the page of the view that the main page stands beside, `keeps` for one that keeps the
 * draft of the feedback, `compares` for one that compares reports, `checksAll` for one whose checks
 * give their answers, `lists` for one that lists all processes, `asks` for one that asks the
 * desktop about associations, `looks` for one that looks at any path, `listsDumps` for
 * one that lists crash dumps; `offers` names further operations.
 * What the view logs as error or warning, or throws, is gathered in `complaints` of the returned
 * page.
 */
export async function openView(browser, directory, scene, options = {}) {
    const { theme = 'light', language = 'en_US', textSize = 100, height = 680 } = options;
    const width = scene.beside ? (14 * 16 * textSize) / 100 : (options.width ?? 1000);
    const page = await browser.newPage({
        width,
        height,
        // A view without a host takes both from the browser.
        language: language.replace('_', '-'),
        theme,
        scale: options.scale,
        stillness: options.stillness,
    });
    if (!scene.withoutHost) {
        const answers = { ...commonAnswers, ...windowAnswers(scene), ...scene.answers };
        const offered = [
            ...doctorOperations,
            ...(scene.watched ? watchOperations : []),
            ...(scene.explained ? whyOperations : []),
            ...(scene.suited ? suiteOperations : []),
            ...(scene.beside ? windowOperations : []),
            ...(scene.compares ? reportOperations : []),
            ...(scene.measured ? measureOperations : []),
            ...(scene.checksAll ? checkOperations : []),
            ...(scene.keeps ? draftOperations : []),
            ...(scene.lists ? processOperations : []),
            ...(scene.asks ? openingOperations : []),
            ...(scene.looks ? pathOperations : []),
            ...(scene.listsDumps ? dumpOperations : []),
            ...(scene.offers ?? []),
        ];
        const operations = scene.withoutDoctor ? undefined : offered;
        const host = JSON.stringify({ theme, language, textSize, answers, operations });
        await page.addInitScript(`(${installHost})(${host})`);
    }
    await page.goto(pathToFileURL(join(directory, scene.page)).href);
    // The page that waits has none.
    if (scene.page !== 'waiting.html') await page.locator('.frame:not([aria-busy])').waitFor();
    return page;
}

/** The commands that the view has sent, in order, each with its arguments. */
export function sentCommands(page) {
    return page.evaluate(() => window.sent);
}

/** Commands that no answer was scripted for: a scene that lets one pass tests the wrong thing. */
export function unexpectedCommands(page) {
    return page.evaluate(() => window.unexpected ?? []);
}

/**
 * Serious and critical findings of axe-core, each in a line: all rules that can have one, as the
 * view stands, and with `bothThemes` the contrast in the other theme too.
 */
export async function accessibilityFindings(page, { bothThemes = false } = {}) {
    await page.evaluate(`${axeSource};undefined`);
    const found = await page.evaluate(async (alsoOther) => {
        const root = document.documentElement;
        // A colour on its way from one state to the next is not what a person reads.
        const still = new CSSStyleSheet();
        still.replaceSync('* { transition: none !important; }');
        document.adoptedStyleSheets = [still];
        const rules = window.axe._audit.rules
            .filter(({ impact }) => ['serious', 'critical'].includes(impact))
            .filter(({ enabled, tags }) => enabled && !tags.includes('experimental'))
            .map(({ id }) => id);
        // Style sheets of files cannot be fetched again, and no rule that runs needs it.
        const options = { preload: false, resultTypes: ['violations'] };
        const asShown = await window.axe.run(document, { ...options, runOnly: rules });
        if (!alsoOther) return asShown.violations;
        root.classList.toggle('dark');
        const otherTheme = await window.axe.run(document, {
            ...options,
            runOnly: ['color-contrast'],
        });
        root.classList.toggle('dark');
        return [...asShown.violations, ...otherTheme.violations];
    }, bothThemes);
    return found.flatMap(({ id, help, nodes }) =>
        nodes.map(
            ({ target, failureSummary }) =>
                `${id}: ${help} at ${target.join(' ')} (${failureSummary})`,
        ),
    );
}
