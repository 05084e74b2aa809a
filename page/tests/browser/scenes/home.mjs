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
const look = (findings = {}, changes = {}) => ({
    result: { type: 'summary' },
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

const well = {
    exportsysinfo: { result: 'success' },
    'doctor.list': list,
    'doctor.look': look(),
    'doctor.cancel': { result: {} },
    'doctor.history': { result: { entries: [] } },
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
const check = (view) => view.locator('.checkup-heading .primary').click();
const openPlan = async (view) => {
    await check(view);
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

export const scenes = [
    { name: 'home', page, answers: well, shows: 'How can we help?' },
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
        shows: 'System report',
    },
    { name: 'home-well', page, answers: well, act: check, shows: 'Everything is fine' },
    {
        name: 'home-checks',
        page,
        answers: {
            ...ill,
            'doctor.look': look(found, {
                'updater.empty': { result: 'skipped', reason: 'The updater is not installed.' },
            }),
        },
        act: async (view) => {
            await check(view);
            await view.locator('.checkup-more .quiet').click();
        },
        shows: 'The updater is not installed.',
    },
    { name: 'home-findings', page, answers: ill, act: check, shows: '5 things need attention' },
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
        act: (view) => view.locator('.checkup-heading .quiet').click(),
        shows: 'had no effect and was undone',
    },
    {
        name: 'home-history-empty',
        page,
        answers: well,
        act: (view) => view.locator('.checkup-heading .quiet').click(),
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
            await view.locator('.checkup-heading .quiet').click();
            await view.locator('.history .push-button').click();
        },
        shows: 'The fix was not undone.',
    },
    {
        name: 'home-ignored',
        page,
        answers: { ...well, 'doctor.look': look({ 'memory.full': [memory] }) },
        act: async (view) => {
            await check(view);
            await view.locator('.finding-actions .quiet').click();
            await view.locator('.checkup-more .quiet').click();
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
        act: check,
        shows: 'not everything could be checked',
    },
    {
        name: 'home-refused',
        page,
        answers: { ...well, 'doctor.list': { refused: 'closing' } },
        act: check,
        shows: 'The assistant rejected the request (closing)',
    },
    {
        name: 'home-late',
        page,
        answers: { ...well, 'doctor.look': { ...look(), late: true } },
        act: check,
        shows: '6 of 6 checks',
        later: 'Everything is fine',
    },
    {
        name: 'home-never',
        page,
        answers: { ...well, 'doctor.look': { never: true, lines: look().lines.slice(0, 2) } },
        act: check,
        shows: '2 of 6 checks',
    },
    { name: 'home-beside', page, answers: well, beside: 'crash.html', shows: 'Overview' },
];
