import { suffixesOf } from '../../../../tests/support/documenttypes.mjs';

import { fix, openings, openReason, repairing } from '../explaining.mjs';
import { change, preview, watching } from '../watching.mjs';

const page = 'associations.html';

/** Three objects as the library answers them; `wrong` are those that need a fix. */
function listing(good, bad, wrong = []) {
    return {
        result: ['vyr', 'shw', 'tbl'].map((tag) =>
            Object.fromEntries(
                suffixesOf[tag].map((extension) => [
                    `.${extension}`,
                    wrong.includes(extension) ? `${bad}|false` : `${good(tag)}|true`,
                ]),
            ),
        ),
    };
}

const types = (wrong) =>
    listing((tag) => `application/vyr-office.${tag}`, 'application/x-other\u202E', wrong);
const programs = (wrong) =>
    listing(
        (tag) => (tag === 'vyr' ? 'vyr-office-vyr.dekstop' : `vyr-office-${tag}.desktop`),
        'vyr-office-shw.desktop',
        wrong,
    );
const nothing = { result: [{}, {}, {}] };

async function repair(view) {
    await view.locator('.ask-once-start').click();
    await view.locator('.ask-once-confirm').click();
}

const defaults = '/home/user/.config/mimeapps.list';
const changed = `--- ${defaults}
+++ ${defaults}
@@ -1,2 +1,2 @@
 [Default Applications]
-application/vyr-office.doc=other.desktop
+application/vyr-office.doc=vyr-office-vyr.desktop
`;
const watched = {
    getassomime: [types(['doc', 'xls']), types()],
    getassoopen: programs(),
    fileassorepair: { result: 'success' },
    'doctor.preview': preview([], { paths: [defaults] }),
    ...watching([change('write', defaults, changed)]),
};

const explained = {
    getassomime: types(['doc']),
    getassoopen: programs(['doc']),
    'why.open': [openings, openings, openReason],
    ...repairing,
};
const why = (view) => view.locator('[aria-label="Why does .doc open like this?"]').click();

const icon =
    "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8'%3E%3Crect width='8' height='8' rx='2' fill='%232f6fde'/%3E%3C/svg%3E";
const entryOf = (tag) => `vyr-office-${tag}.desktop`;

/** What a shell that asks the desktop answers; `wrong` are those that need a fix. */
function asked({ wrong = [], unknown = [], suite = 'own', name = '' } = {}) {
    return {
        result: {
            end: 'done',
            suite,
            name,
            rows: ['vyr', 'tbl', 'shw'].flatMap((tag) =>
                suffixesOf[tag].map((suffix) => ({
                    suffix,
                    program: entryOf(tag),
                    type: unknown.includes(suffix)
                        ? 'application/octet-stream'
                        : `application/vyr-office.${suffix}`,
                    entry: wrong.includes(suffix) ? 'archive\u202E.desktop' : entryOf(tag),
                    isKnown: !unknown.includes(suffix),
                    isSuite: !wrong.includes(suffix),
                })),
            ),
            programs: {
                [entryOf('vyr')]: { title: 'Suite Writer', icon },
                [entryOf('tbl')]: { title: 'Suite Spreadsheets', icon },
                [entryOf('shw')]: { title: 'Suite Presentations', icon },
            },
        },
    };
}

const mending = {
    'task.associations': asked({ wrong: ['doc', 'xls'], unknown: ['doc'] }),
    'task.associate': asked({ wrong: ['xls'] }),
    'why.open': { result: { suffixes: [] } },
    'doctor.preview': preview([], { paths: ['/home/user/.config/mimeapps.list'] }),
    ...watching([change('write', '/home/user/.config/mimeapps.list')]),
};
const mendOne = (view) => view.locator('[aria-label="Open .doc with the suite…"]').click();

const inOwnShell = [
    {
        name: 'associations',
        page,
        answers: { 'task.associations': asked({ wrong: ['doc', 'ppt'] }) },
        shows: 'Suite Spreadsheets',
    },
    {
        name: 'associations-one-asked',
        page,
        watched: true,
        explained: true,
        answers: mending,
        act: mendOne,
        shows: 'Documents that end in .doc will open with the suite.',
    },
    {
        name: 'associations-one-fixed',
        page,
        watched: true,
        answers: mending,
        act: async (view) => {
            await mendOne(view);
            await view.locator('.row-repair-confirm:not([disabled])').click();
        },
        shows: 'Fixed and checked again: .doc opens with the suite.',
    },
    {
        name: 'associations-all-fixed',
        page,
        answers: { ...mending, 'task.associate': asked() },
        act: repair,
        shows: 'Fixed and checked again: all 39',
    },
    {
        name: 'associations-desktop-refuses',
        page,
        answers: {
            ...mending,
            'task.associate': { result: { end: 'failed', reason: 'gio ended with status 1.' } },
        },
        act: repair,
        shows: 'gio ended with status 1.',
    },
    {
        name: 'associations-no-suite',
        page,
        answers: { 'task.associations': asked({ suite: '', wrong: ['doc'], unknown: ['vyr'] }) },
        shows: 'No office suite is installed',
    },
    {
        name: 'associations-desktop-hangs',
        page,
        answers: { 'task.associations': { never: true } },
        act: (view) => view.locator('.task-state .push-button').waitFor(),
        shows: 'Asking the desktop about 39',
    },
];

export const scenes = [
    ...inOwnShell.map((scene) => ({ ...scene, asks: true })),
    {
        name: 'associations-explained',
        page,
        explained: true,
        answers: explained,
        act: why,
        shows: 'names lost.desktop, but it is not installed',
    },
    {
        name: 'associations-explained-fixed',
        page,
        explained: true,
        answers: { ...explained, 'why.open': [openings, openings, openReason] },
        act: async (view) => {
            await why(view);
            await fix(view);
        },
        shows: 'Fixed and checked again.',
    },
    {
        name: 'associations-unexplained',
        page,
        explained: true,
        answers: { ...explained, 'why.open': [openings, { refused: 'closing' }] },
        act: why,
        shows: 'The assistant rejected the request',
    },
    {
        name: 'associations-by-commands',
        page,
        answers: { getassomime: types(), getassoopen: programs() },
        shows: 'All 39 document types are set up correctly.',
    },
    {
        name: 'associations-problems',
        page,
        answers: {
            getassomime: types(['doc', 'xls']),
            getassoopen: programs(['doc', 'docx', 'rtf', 'ppt']),
        },
        act: (view) => view.locator('input[value="problems"]').check(),
        shows: '3 types need a fix',
    },
    {
        name: 'associations-filter',
        page,
        answers: { getassomime: types(['doc']), getassoopen: programs() },
        act: async (view) => {
            await view.locator('.association-table').waitFor();
            await view.keyboard.press('Control+f');
            await view.keyboard.type('office.tbl');
        },
        shows: '.tblx',
    },
    {
        name: 'associations-repaired',
        page,
        answers: {
            getassomime: [types(['doc', 'xls']), types(['doc']), types()],
            getassoopen: programs(),
            fileassorepair: { result: 'success' },
        },
        act: repair,
        shows: 'Fixed and checked again: all 39',
    },
    {
        name: 'associations-not-repaired',
        page,
        answers: {
            getassomime: types(['doc']),
            getassoopen: programs(),
            fileassorepair: { result: 'success' },
        },
        act: repair,
        shows: 'One type still needs a fix',
    },
    {
        name: 'associations-previewed',
        page,
        watched: true,
        answers: watched,
        act: (view) => view.locator('.ask-once-start').click(),
        shows: 'These files may be changed:',
    },
    {
        name: 'associations-watched',
        page,
        watched: true,
        answers: watched,
        act: repair,
        shows: '+application/vyr-office.doc=vyr-office-vyr.desktop',
    },
    {
        name: 'associations-no-samples',
        page,
        answers: { getassomime: nothing, getassoopen: nothing },
        shows: 'The sample documents are missing',
    },
    {
        name: 'associations-no-tools',
        page,
        answers: {
            getassomime: listing(() => '', '', Object.values(suffixesOf).flat()),
            getassoopen: listing(() => '', '', Object.values(suffixesOf).flat()),
        },
        shows: 'Install the package libglib2.0-bin',
    },
    {
        name: 'associations-failed',
        page,
        answers: { getassomime: { result: 'error' } },
        shows: 'The document types could not be checked',
    },
    {
        name: 'associations-unanswered',
        page,
        answers: { getassomime: types(), getassoopen: {} },
        shows: 'The assistant did not answer',
    },
    {
        name: 'associations-late',
        page,
        answers: { getassomime: { late: true, ...types() }, getassoopen: programs() },
        shows: 'Asking the desktop about 39',
        later: 'All 39 document types are set up correctly.',
    },
    {
        name: 'associations-never',
        page,
        answers: { getassomime: { never: true } },
        shows: 'Asking the desktop about 39',
    },
];
