const page = 'feedback.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const path = (text) => ({ result: base64(text) });
const answers = {
    getcollectionpage: { result: { page: '' } },
    getDumpState: { result: { enable: true, feedback: false } },
};
/** Of a shell whose disk is full. */
const notKept = {
    ...answers,
    'draft.read': { result: { text: '' } },
    'draft.keep': { result: { kept: false } },
};
const files = {
    ...answers,
    choosesamplefile: path('/home/user/Documents/report.docx'),
    chooseattachment: [
        path('/home/user/screen one.png'),
        path('/home/user/r\u202Eeport.docx'),
        path('/tmp/report.docx'),
    ],
};

const describe = (view) => view.locator('textarea').fill('The third page\nis empty.');
/** The text is handed to the shell, which answers at once, before the next frame. */
const triedToKeep = (view) =>
    view.evaluate(() => new Promise((done) => requestAnimationFrame(() => setTimeout(done))));
const build = (view) => view.locator('.summary-panel .el-button--primary').click();

async function describeAndBuild(view) {
    await describe(view);
    await build(view);
}

async function addFiles(view) {
    await view.locator('.files-panel .button-row button', { nth: 0 }).click();
    for (const count of [2, 3, 4]) {
        await view.locator('.files-panel .button-row button', { nth: 1 }).click();
        await view.locator('.files-panel li', { nth: count - 1 }).waitFor();
    }
}

export const scenes = [
    { name: 'feedback', page, answers, shows: 'Describe what happened first.' },
    {
        name: 'feedback-layout',
        page,
        answers: {
            ...answers,
            getcollectionpage: { result: { page: 'layout', file: '/home/user/plan.docx' } },
        },
        shows: 'plan.docx',
    },
    {
        name: 'feedback-crash',
        page,
        answers: { ...answers, getcollectionpage: { result: { page: 'crash' } } },
        shows: 'There are no crash dumps at the moment.',
    },
    {
        name: 'feedback-files',
        page,
        answers: files,
        act: addFiles,
        shows: '2 files will be missing or replaced',
    },
    {
        name: 'feedback-cancelled',
        page,
        answers: { ...answers, chooseattachment: { result: 'error' } },
        act: (view) => view.locator('.files-panel .button-row button', { nth: 1 }).click(),
        shows: 'No file was chosen.',
    },
    {
        name: 'feedback-built',
        page,
        answers: { ...answers, archivepackage: path('/home/user/my feedback') },
        act: describeAndBuild,
        shows: '/home/user/my feedback.tar.gz',
    },
    {
        name: 'feedback-not-built',
        page,
        answers: { ...answers, archivepackage: { result: 'error' } },
        act: describeAndBuild,
        shows: 'No archive was created',
    },
    {
        name: 'feedback-unanswered',
        page,
        answers: { ...answers, archivepackage: {} },
        act: describeAndBuild,
        shows: 'The assistant did not answer',
    },
    {
        name: 'feedback-unkept',
        page,
        keeps: true,
        answers: notKept,
        shows: 'Describe what happened first.',
    },
    {
        name: 'feedback-unsaved',
        page,
        keeps: true,
        answers: notKept,
        act: async (view) => {
            await describe(view);
            await triedToKeep(view);
            await view.keyboard.press('Escape');
        },
        shows: 'Close again to leave anyway',
    },
    {
        name: 'feedback-late',
        page,
        answers: { ...answers, archivepackage: { late: true, ...path('/tmp/feedback') } },
        act: describeAndBuild,
        shows: 'Choose where to save the archive',
        later: '/tmp/feedback.tar.gz',
    },
    {
        name: 'feedback-never',
        page,
        answers: { ...answers, choosesamplefile: { never: true } },
        act: (view) => view.locator('.files-panel .button-row button', { nth: 0 }).click(),
        shows: 'Choose a file in the open dialog',
    },
];
