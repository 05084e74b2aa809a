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
const pixel =
    'data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNkYPhfDwAChwGA60e6kgAAAABJRU5ErkJggg==';

/** A screenshot from the clipboard. */
const paste = (view) =>
    view.evaluate(() => {
        const clipboardData = new DataTransfer();
        clipboardData.items.add(new File(['x'], 'image.png', { type: 'image/png' }));
        const event = new ClipboardEvent('paste', {
            clipboardData,
            bubbles: true,
            cancelable: true,
        });
        document.body.dispatchEvent(event);
    });

const drop = (view) =>
    view.evaluate(() => {
        const dataTransfer = new DataTransfer();
        dataTransfer.items.add(new File(['x'], 'log.txt'));
        const event = new DragEvent('drop', { dataTransfer, bubbles: true, cancelable: true });
        document.body.dispatchEvent(event);
    });

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
        name: 'feedback-pasted',
        page,
        keeps: true,
        offers: ['draft.picture', 'task.preview', 'task.archive'],
        answers: {
            ...answers,
            'draft.read': { result: { text: '' } },
            'draft.keep': { result: { kept: true } },
            'draft.picture': { result: { file: '/home/user/.local/state/shot.png' } },
            'task.preview': {
                result: {
                    end: 'done',
                    exists: true,
                    size: 48_211,
                    changed: '2026-02-01T08:00:00Z',
                    picture: pixel,
                },
            },
        },
        act: async (view) => {
            await describe(view);
            await paste(view);
        },
        shows: '47.1 KiB',
    },
    {
        name: 'feedback-dropped',
        page,
        offers: ['window.dropped', 'task.preview', 'task.archive'],
        answers: {
            ...answers,
            'window.dropped': { result: { paths: ['/home/user/log\u202E.txt', '/home/gone'] } },
            'task.preview': [
                {
                    result: {
                        end: 'done',
                        exists: true,
                        size: 30,
                        changed: '2026-02-01T08:00:00Z',
                        text: 'first line\nsecond\u0007 line\n3\n4\n5',
                    },
                },
                { result: { end: 'done', exists: false, size: 0, changed: '' } },
            ],
        },
        act: drop,
        shows: 'This file is no longer there.',
    },
    {
        name: 'feedback-addressed',
        page,
        keeps: true,
        offers: ['draft.receiver', 'draft.write', 'task.archive'],
        answers: {
            ...answers,
            'draft.read': { result: { text: '' } },
            'draft.keep': { result: { kept: true } },
            'draft.receiver': { result: { address: 'mailto:support@example.org' } },
            'draft.write': { result: { opened: false } },
            'task.archive': { result: { end: 'done', file: '/home/user/a.tar.gz' } },
        },
        act: async (view) => {
            await describeAndBuild(view);
            await view.getByText('support@example.org').waitFor();
            await view.locator('.summary-archive .el-button--primary').click();
        },
        shows: 'The desktop has no program for this address',
    },
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
