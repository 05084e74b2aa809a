import { described } from './libreoffice.mjs';

const page = 'index.html';

const settings = '/home/user/.config/Orvane/Office.conf';
const associations = '/home/user/.config/mimeapps.list';

const listed = (check, title, repairTitles = {}) => ({
    type: 'listed',
    check,
    title,
    repairTitles,
});
const list = {
    result: {
        checks: [
            listed('associations.writer', 'Text documents open with the suite', {
                'open-with-suite': 'Open with the suite again',
            }),
            listed('crash.dumps-off', 'Crash dumps are kept', { keep: 'Keep dumps' }),
            listed('input.ibus-not-running', 'The input method ibus is running'),
            listed('memory.full', 'Memory is left'),
            listed('permissions.foreign', 'Settings belong to the user', {
                'take-over': 'Give it back to you',
            }),
            listed('updater.empty', 'The updater is configured'),
        ],
        mistakes: [],
    },
};

const finding = (number, check, state, text, where = [], repairs = []) => ({
    type: 'finding',
    finding: number,
    check,
    state,
    text,
    where,
    repairs,
});
const memory = finding(
    1,
    'memory.full',
    'bad',
    'Memory is almost full (93% in use, 244 MiB left).',
);
const found = {
    'associations.writer': [
        ['.docx', 14],
        ['.rtf', 21],
    ].map(([suffix, line], index) =>
        finding(
            2 + index,
            'associations.writer',
            'warning',
            `${suffix} documents open with other.desktop, not with the suite.`,
            [{ path: associations, line }],
            ['open-with-suite'],
        ),
    ),
    'crash.dumps-off': [
        finding(
            4,
            'crash.dumps-off',
            'note',
            'Crash dumps are not kept, so the cause of a crash is hard to find.',
            [{ path: settings, line: 3 }],
            ['keep'],
        ),
    ],
    'input.ibus-not-running': [
        finding(5, 'input.ibus-not-running', 'bad', 'The input method ibus is not running.', [
            { process: 4711 },
        ]),
    ],
    'memory.full': [memory],
    'permissions.foreign': [
        finding(
            6,
            'permissions.foreign',
            'bad',
            `${settings} belongs to root, not to you: the suite cannot save your settings.`,
            [{ path: settings }],
            ['take-over'],
        ),
    ],
};
const changed = {
    type: 'summary',
    since: new Date().toISOString(),
    last: '2026-03-01T08:30:00Z',
    fixed: ['updater.empty', 'memory.tight'],
    new: ['crash.dumps-off'],
    unkept: '',
};
const look = (findings = {}, changes = {}) => ({
    result: changed,
    lines: list.result.checks.flatMap(({ check }) => [
        {
            type: 'check',
            check,
            result: findings[check] ? 'finding' : 'ok',
            reason: '',
            ...changes[check],
        },
        ...(findings[check] ?? []),
    ]),
});

const change = (kind, rest) => ({ kind, path: '', diff: '', command: '', needs: 'user', ...rest });
const plan = (...changes) => ({ result: { plan: 9, changes, refusal: '' } });
const diff = `--- ${settings}
+++ ${settings}
@@ -1,4 +1,4 @@
 [6.0]
 common\\Language=en_US
-common\\CrashDump\\SaveDump=false
+common\\CrashDump\\SaveDump=true
 common\\Window=maximised
`;
const newFile = `--- /dev/null
+++ ${settings}.old
@@ -0,0 +1,2 @@
+[6.0]
+common\\Language=en_US
`;
const entry = (journal, state, check, repair, path) => ({
    journal,
    time: `2026-03-0${journal}T08:30:00Z`,
    check,
    repair,
    state,
    paths: [path],
});
const history = {
    result: {
        entries: [
            entry(1, 'undone', 'crash.dumps-off', 'keep', settings),
            entry(2, 'taken-back', 'permissions.foreign', 'take-over', settings),
            entry(3, 'applied', 'associations.writer', 'open-with-suite', associations),
        ],
    },
};

const kept = (since, until, found, failed) => ({ since, until, found, failed });
const well = {
    exportsysinfo: { result: 'success' },
    'doctor.list': list,
    'doctor.look': look(),
    'doctor.cancel': { result: {} },
    'doctor.history': { result: { entries: [] } },
    'doctor.checkups': {
        result: {
            checkups: [
                kept('2026-03-01T08:00:00Z', '2026-03-02T09:30:00Z', ['crash.dumps-off'], []),
                kept('2026-03-04T08:15:00Z', '2026-03-04T08:15:00Z', [], ['updater.empty']),
            ],
        },
    },
};
const ill = { ...well, 'doctor.look': look(found) };
const dumps = { 'crash.dumps-off': found['crash.dumps-off'] };
const repairable = {
    ...well,
    'doctor.look': [look(dumps), look()],
    'doctor.plan': plan(
        change('write', { path: settings, diff }),
        change('create', { path: `${settings}.old`, diff: newFile }),
        change('rights', { path: settings, mode: '0640' }),
    ),
    'doctor.fix': { result: { result: 'repaired', journal: 3, reason: '' } },
    'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
    'doctor.history': history,
};
const openPlan = async (view) => {
    await view.locator('.finding-actions .primary').click();
    await view.locator('.plan').waitFor();
};
const fix = async (view) => {
    await openPlan(view);
    await view.locator('.plan .primary').click();
};
const failing = (result, reason) => ({
    ...repairable,
    'doctor.look': look(dumps),
    'doctor.fix': { result: { result, journal: 0, reason } },
});

const manyRepairs = {
    ...repairable,
    'doctor.look': [
        look({ ...dumps, 'associations.writer': found['associations.writer'] }),
        look(),
    ],
    'doctor.plan': [
        plan(
            change('write', {
                path: associations,
                diff: `--- ${associations}\n+++ ${associations}\n@@ -13,2 +13,2 @@\n-application/rtf=other.desktop;\n+application/rtf=vyr-office-vyr.desktop;other.desktop;\n`,
            }),
        ),
        plan(change('write', { path: settings, diff })),
    ],
};
const planAll = async (view) => {
    await view.locator('.fix-all-start').click();
    await view.locator('.fix-all').waitFor();
};

export const scenes = [
    { name: 'home', page, answers: ill, shows: '5 things to look at' },
    {
        name: 'home-suite',
        page,
        suited: true,
        answers: { ...well, 'suite.describe': { result: described } },
        shows: 'LibreOffice 7.4 is installed and not running.',
    },
    {
        name: 'home-settings',
        page,
        answers: well,
        act: (view) => view.locator('[aria-haspopup="dialog"]').click(),
        shows: 'Text size',
    },
    {
        name: 'home-veil',
        page,
        answers: well,
        act: (view) => view.evaluate(() => window.hiddentipCallBack({ result: 'show' })),
        shows: 'A tool is open in its own window',
    },
    {
        name: 'home-exported',
        page,
        answers: well,
        act: (view) => view.locator('.report-actions .primary').click(),
        shows: 'The report should now be where you saved it.',
    },
    { name: 'home-without-host', page, withoutHost: true, shows: 'ordinary browser' },
    {
        name: 'home-without-doctor',
        page,
        withoutDoctor: true,
        answers: well,
        shows: 'How can we help?',
    },
    { name: 'home-well', page, answers: well, shows: 'All is well' },
    {
        name: 'home-old',
        page,
        answers: well,
        act: async (view) => {
            await view.locator('.verdict.good').waitFor();
            await view.evaluate(() => {
                const later = Date.now() + 60 * 60 * 1000;
                Date.now = () => later;
                window.dispatchEvent(new Event('focus'));
            });
        },
        shows: 'may be out of date',
    },
    {
        name: 'home-finder',
        page,
        answers: ill,
        act: async (view) => {
            await view.locator('.finding-card').waitFor();
            await view.keyboard.press('Control+k');
            await view.locator('.finder-field').fill('e');
        },
        shows: 'Setting',
    },
    {
        name: 'home-copied',
        page,
        answers: ill,
        act: (view) => view.locator('.history-start + .quiet').click(),
        shows: 'Copied.',
    },
    { name: 'home-fix-all', page, answers: manyRepairs, act: planAll, shows: 'Make 2 fixes' },
    {
        name: 'home-fixed-all',
        page,
        answers: manyRepairs,
        act: async (view) => {
            await planAll(view);
            await view.locator('.fix-all .primary').click();
        },
        shows: 'All is well',
    },
    {
        name: 'home-checks',
        page,
        answers: {
            ...ill,
            'doctor.look': look(found, {
                'updater.empty': { result: 'skipped', reason: 'The updater is not installed.' },
            }),
        },
        act: (view) => view.locator('.well-line').click(),
        shows: 'The updater is not installed.',
    },
    {
        name: 'home-planned',
        page,
        answers: repairable,
        act: openPlan,
        shows: '+common\\CrashDump\\SaveDump=true',
    },
    {
        name: 'home-administrator',
        page,
        answers: {
            ...repairable,
            'doctor.look': look({ 'permissions.foreign': found['permissions.foreign'] }),
            'doctor.plan': plan(
                change('command', {
                    command: `sudo chown user ${settings}`,
                    needs: 'administrator',
                }),
            ),
        },
        act: openPlan,
        shows: `sudo chown user ${settings}`,
    },
    {
        name: 'home-plan-refused',
        page,
        answers: {
            ...repairable,
            'doctor.plan': {
                result: { plan: 9, changes: [], refusal: `${settings} cannot be read` },
            },
        },
        act: openPlan,
        shows: 'This cannot be fixed from here',
    },
    {
        name: 'home-repaired',
        page,
        answers: repairable,
        act: fix,
        shows: 'Fixed and checked again: Crash dumps are kept',
    },
    {
        name: 'home-unchanged',
        page,
        answers: failing('unchanged', 'the finding was still there, so it was taken back'),
        act: fix,
        shows: 'The fix did not help',
    },
    {
        name: 'home-undone',
        page,
        answers: { ...repairable, 'doctor.look': [look(dumps), look(), look(dumps)] },
        act: async (view) => {
            await fix(view);
            await view.locator('.checkup-done .push-button').click();
        },
        shows: 'Undone: Keep dumps',
    },
    {
        name: 'home-history',
        page,
        answers: repairable,
        act: (view) => view.locator('.history-start').click(),
        shows: 'had no effect and was undone',
    },
    {
        name: 'home-history-empty',
        page,
        answers: well,
        act: (view) => view.locator('.history-start').click(),
        shows: 'Nothing has been fixed yet.',
    },
    {
        name: 'home-history-conflict',
        page,
        answers: {
            ...repairable,
            'doctor.undo': {
                result: {
                    result: 'conflict',
                    reason: 'What you changed later is in the way.',
                    kept: [associations],
                },
            },
        },
        act: async (view) => {
            await view.locator('.history-start').click();
            await view.locator('.history .push-button').click();
        },
        shows: 'The fix was not undone.',
    },
    {
        name: 'home-ignored',
        page,
        answers: { ...well, 'doctor.look': look({ 'memory.full': [memory] }) },
        act: async (view) => {
            await view.locator('.finding-actions .quiet').click();
            await view.locator('.well-line + .quiet').click();
        },
        shows: 'Memory is almost full',
    },
    {
        name: 'home-failed',
        page,
        answers: {
            ...well,
            'doctor.list': {
                result: {
                    ...list.result,
                    mistakes: [
                        {
                            file: '/etc/office-assistant/checks.d/own.json',
                            line: 3,
                            column: 9,
                            message: 'unknown key "loook"',
                        },
                    ],
                },
            },
            'doctor.look': look(
                {},
                { 'updater.empty': { result: 'failed', reason: 'given up after 2.5 s' } },
            ),
        },
        shows: 'not everything could be checked',
    },
    {
        name: 'home-refused',
        page,
        answers: { ...well, 'doctor.list': { refused: 'closing' } },
        shows: 'The assistant rejected the request (closing)',
    },
    {
        name: 'home-late',
        page,
        answers: { ...well, 'doctor.look': { ...look(), late: true } },
        shows: 'Checking this computer…',
        later: 'All is well',
    },
    {
        name: 'home-never',
        page,
        answers: { ...well, 'doctor.look': { never: true, lines: look().lines.slice(0, 2) } },
        shows: 'Checking this computer…',
    },
    { name: 'home-beside', page, answers: well, beside: 'crash.html', shows: 'Overview' },
];
