import { change, preview, watching } from '../watching.mjs';
import { described } from './libreoffice.mjs';

const page = 'crash.html';

const none = { result: { enable: true, feedback: false } };
const some = { result: { enable: true, feedback: true } };
const answers = {
    getDumpState: some,
    startDump: { result: 'success' },
    stopDump: { result: 'success' },
    cleardumpdir: { result: 'success' },
};
const confirmClear = async (view) => {
    await view.locator('.ask-once-start').click();
    await view.locator('.ask-once-confirm').click();
};

const dump = '/home/user/.local/share/Orvane/tmp/dump/vyr_17.dmp';
const settings = '/home/user/.config/Orvane/Office.conf';
const watched = {
    ...answers,
    getDumpState: [some, none],
    'doctor.preview': [preview([], { paths: [settings] }), preview([change('remove', dump)])],
    ...watching([change('remove', dump)]),
};

const listed = (kept, dumps) => ({
    result: {
        end: 'done',
        kept,
        folder: '/home/user/.local/share/Orvane/tmp/dump',
        count: dumps.length,
        dumps,
    },
});
const dumps = [
    {
        name: 'vyr_17.dmp',
        size: 2_345_678,
        changed: '2024-03-01T10:20:30Z',
        program: 'vyr',
        signal: 'SIGSEGV',
    },
    {
        name: 'other\u202E.txt',
        size: 120,
        changed: '2024-02-01T10:20:30Z',
        program: '',
        signal: '',
    },
];

const inOwnShell = [
    { name: 'crash', page, answers: { 'task.dumps': listed(true, dumps) }, shows: 'SIGSEGV' },
    {
        name: 'crash-folder-opened',
        page,
        answers: {
            'task.dumps': listed(true, dumps),
            'task.dumpfolder': { result: { end: 'done', opened: true } },
        },
        act: (view) => view.locator('.dump-folder').click(),
        shows: 'The folder is open in the file manager.',
    },
    {
        name: 'crash-not-stored',
        page,
        answers: { 'task.dumps': listed(false, []), startDump: { result: 'success' } },
        act: (view) => view.locator('[role="switch"]').click(),
        shows: 'The setting did not change.',
    },
];

export const scenes = [
    ...inOwnShell.map((scene) => ({ ...scene, listsDumps: true })),
    { name: 'crash-by-commands', page, answers, shows: 'Dumps found' },
    { name: 'crash-empty', page, answers: { ...answers, getDumpState: none }, shows: 'No dumps' },
    {
        name: 'crash-off',
        page,
        answers: { ...answers, getDumpState: { result: { enable: false, feedback: false } } },
        shows: 'A crash leaves nothing behind',
    },
    {
        name: 'crash-fresh',
        page,
        answers: { ...answers, getDumpState: [none, some] },
        act: async (view) => {
            await view.locator('.dump-actions').waitFor();
            await view.evaluate(() => window.freshcrshpageCallBack({ result: 'success' }));
            await view.locator('.fresh-dump').waitFor();
        },
        shows: 'The suite has just left a crash dump',
    },
    {
        name: 'crash-suite',
        page,
        suited: true,
        answers: { ...answers, 'suite.describe': { result: described } },
        shows: 'LibreOffice writes no dumps.',
    },
    {
        name: 'crash-asked',
        page,
        answers,
        act: (view) => view.locator('.ask-once-start').click(),
        shows: 'This cannot be undone.',
    },
    {
        name: 'crash-cleared',
        page,
        answers: { ...answers, getDumpState: [some, none] },
        act: confirmClear,
        shows: 'Deleted and checked again: no dumps are left.',
    },
    {
        name: 'crash-previewed',
        page,
        watched: true,
        answers: watched,
        act: async (view) => {
            await view.getByText(settings).waitFor();
            await view.locator('.ask-once-start').click();
        },
        shows: dump,
    },
    {
        name: 'crash-too-large',
        page,
        watched: true,
        answers: {
            ...watched,
            'doctor.preview': [
                preview([], { paths: [settings] }),
                preview([change('remove', dump)], { lasting: 'The files are too large.' }),
            ],
        },
        act: async (view) => {
            await view.getByText(settings).waitFor();
            await view.locator('.ask-once-start').click();
        },
        shows: 'This cannot be undone: The files are too large.',
    },
    {
        name: 'crash-watched',
        page,
        watched: true,
        answers: watched,
        act: async (view) => {
            await view.getByText(settings).waitFor();
            await confirmClear(view);
        },
        shows: 'What was changed',
    },
    {
        name: 'crash-not-cleared',
        page,
        answers,
        act: confirmClear,
        shows: 'Some dumps could not be deleted.',
    },
    {
        name: 'crash-failed',
        page,
        answers: { ...answers, getDumpState: { result: 'error' } },
        shows: 'Dumps could not be checked',
    },
    {
        name: 'crash-unanswered',
        page,
        answers: { ...answers, cleardumpdir: {} },
        act: confirmClear,
        shows: 'The assistant did not answer.',
    },
    {
        name: 'crash-late',
        page,
        answers: { ...answers, cleardumpdir: { late: true, result: 'success' } },
        act: confirmClear,
        shows: 'Wait until the current task is finished',
        later: 'Some dumps could not be deleted.',
    },
    {
        name: 'crash-never',
        page,
        answers: { ...answers, getDumpState: { never: true } },
        shows: 'Looking for dumps.',
    },
];
