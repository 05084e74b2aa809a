const page = 'updater.html';

const settings = {
    channel: 'stable',
    interval: '7',
    proxy: '',
    server: 'https://update.example.org/feed?product=office&os=linux',
    usagecollected: '2026-03-02 09:12:44',
};
const logText = Array.from(
    { length: 400 },
    (_, index) =>
        `2026-03-02 09:${String(index % 60).padStart(2, '0')}:07 [${index % 9 ? 'info' : 'error'}] ` +
        `step ${index + 1}: ${index % 9 ? 'nothing new' : 'the server did not answer\u0007'}`,
).join('\n');
const log = { result: Buffer.from(`${logText}\n`).toString('base64') };
const answers = {
    getupdatesupport: { result: true },
    getupdateconfig: { result: settings },
    getlogfile: log,
};

const openLog = (view) => view.locator('#tab-log').click();
const openRuns = (view) => view.locator('#tab-runs').click();

/** Edits the first setting. */
async function edit(view, value) {
    await view.locator('tbody tr:first-child button').click();
    await view.locator('[aria-label="channel"]').fill(value);
}

async function clearLog(view) {
    await openLog(view);
    await view.locator('.ask-once-start').click();
    await view.locator('.ask-once-confirm').click();
}

export const scenes = [
    { name: 'updater', page, answers, shows: 'The updater is installed.' },
    {
        name: 'updater-edited',
        page,
        answers: {
            ...answers,
            getupdateconfig: [{ result: settings }, { result: { ...settings, channel: 'beta' } }],
            changeupdateconfig: { result: 'success' },
        },
        act: async (view) => {
            await edit(view, 'beta');
            await view.keyboard.press('Enter');
        },
        shows: 'Saved and read again.',
    },
    {
        name: 'updater-dollar',
        page,
        answers,
        act: (view) => edit(view, '$HOME'),
        shows: '“$” cannot be saved',
    },
    {
        name: 'updater-not-writable',
        page,
        answers: { ...answers, changeupdateconfig: { result: 'success' } },
        act: async (view) => {
            await view.locator('.configuration-new input', { nth: 0 }).fill('added');
            await view.keyboard.press('Enter');
        },
        shows: 'The old value is still there',
    },
    { name: 'updater-log', page, answers, act: openLog, shows: '400 lines' },
    {
        name: 'updater-log-search',
        page,
        answers,
        act: async (view) => {
            await view.locator('.updater-tabs').waitFor();
            await view.keyboard.press('Control+f');
            await view.locator('.log-filter input:focus').waitFor();
            await view.keyboard.type('error step 100:');
        },
        shows: '1 of 400 lines',
    },
    {
        name: 'updater-log-cleared',
        page,
        answers: {
            ...answers,
            getlogfile: [log, { result: 'error' }],
            clearlogfile: { result: 'success' },
        },
        act: clearLog,
        shows: 'Cleared and checked again',
    },
    {
        name: 'updater-log-not-cleared',
        page,
        answers: { ...answers, clearlogfile: { result: 'success' } },
        act: clearLog,
        shows: 'it belongs to another user',
    },
    {
        name: 'updater-runs',
        page,
        answers: { ...answers, testinstallreport: {} },
        act: async (view) => {
            await openRuns(view);
            await view.locator('.test-runs li:nth-child(3) .ask-once-start').click();
            await view.locator('.ask-once-confirm').click();
        },
        shows: 'Started. The result will appear',
    },
    {
        name: 'updater-run-asking',
        page,
        answers,
        act: async (view) => {
            await openRuns(view);
            await view.locator('.test-runs li:nth-child(4) .ask-once-start').click();
        },
        shows: 'This reports a removal',
    },
    {
        name: 'updater-run-unanswered',
        page,
        answers: { ...answers, testupdate: {} },
        act: async (view) => {
            await openRuns(view);
            await view.locator('.test-runs li:nth-child(1) button').click();
        },
        shows: 'The run could not be started',
    },
    {
        name: 'updater-absent',
        page,
        answers: {
            getupdatesupport: { result: false },
            getupdateconfig: { result: 'error' },
            getlogfile: { result: 'error' },
        },
        shows: 'The updater is not installed.',
    },
    {
        name: 'updater-empty',
        page,
        answers: {
            getupdatesupport: { result: false },
            getupdateconfig: { result: {} },
            getlogfile: { result: '' },
        },
        shows: 'The settings file is empty.',
    },
    {
        name: 'updater-failed',
        page,
        answers: { ...answers, getupdatesupport: { result: 'yes' } },
        shows: 'The updater could not be checked',
    },
    {
        name: 'updater-late',
        page,
        answers: { ...answers, getlogfile: { late: true, ...log } },
        shows: 'Please wait.',
        later: 'Refreshed.',
    },
    {
        name: 'updater-never',
        page,
        answers: { ...answers, getupdatesupport: { never: true } },
        shows: 'Please wait.',
    },
];
