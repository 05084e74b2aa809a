const page = 'layout.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const chosen = { result: base64('/home/user/Documents/r\u202Eeport.docx') };

const choose = (view) => view.locator('.el-button--primary').click();
const picture = `data:image/svg+xml;base64,${base64(
    '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 210 297">' +
        '<rect width="210" height="297" fill="#fff"/><rect x="25" y="30" width="160" height="12"/></svg>',
)}`;

async function chooseAndDraw(view) {
    await choose(view);
    await view.locator('.step-card:nth-child(2) .el-button', { nth: 1 }).click();
}

async function chooseAndOpen(view) {
    await choose(view);
    await view.locator('.step-card:nth-child(2) .el-button--primary').click();
}

export const scenes = [
    { name: 'layout', page, shows: 'You can choose text documents' },
    {
        name: 'layout-opened',
        page,
        answers: { chooselayouterrorfile: chosen, openlaytouerrorfile: { result: 'success' } },
        act: chooseAndOpen,
        shows: 'The document was opened.',
    },
    {
        name: 'layout-pictured',
        page,
        offers: ['task.print', 'task.preview', 'window.dropped'],
        answers: {
            chooselayouterrorfile: chosen,
            'task.print': {
                result: { end: 'done', document: '/home/user/a.docx', file: '/home/user/a.pdf' },
            },
            'task.preview': {
                result: { end: 'done', exists: true, size: 9, changed: '2026-01-01', picture },
            },
        },
        act: chooseAndDraw,
        shows: 'First page of the PDF',
    },
    {
        name: 'layout-not-pictured',
        page,
        offers: ['task.print', 'task.preview'],
        answers: {
            chooselayouterrorfile: chosen,
            'task.print': {
                result: { end: 'done', document: '/home/user/a.docx', file: '/home/user/a.pdf' },
            },
            'task.preview': {
                result: { end: 'done', exists: true, size: 9, changed: '2026-01-01' },
            },
        },
        act: chooseAndDraw,
        shows: 'The page cannot be shown here',
    },
    {
        name: 'layout-cancelled',
        page,
        answers: { chooselayouterrorfile: { result: 'error' } },
        act: choose,
        shows: 'No file was chosen.',
    },
    {
        name: 'layout-gone',
        page,
        answers: { chooselayouterrorfile: chosen, openlaytouerrorfile: { result: 'error' } },
        act: chooseAndOpen,
        shows: 'The document is no longer there',
    },
    {
        name: 'layout-unsafe',
        page,
        answers: { chooselayouterrorfile: chosen, openlaytouerrorfile: {} },
        act: chooseAndOpen,
        shows: 'opening it could run a program',
    },
    {
        name: 'layout-handed-over',
        page,
        answers: { chooselayouterrorfile: chosen, router: { refused: 'no window' } },
        act: async (view) => {
            await choose(view);
            await view.locator('.step-card:nth-child(3) button').click();
            await view.until(
                () =>
                    window.sent.some(
                        ({ command, args }) =>
                            command === 'feedbacktovyr' && args.infopage === 'layout',
                    ) &&
                    window.sent.some(
                        ({ command, args }) =>
                            command === 'router' && args.page === 'feedback.html',
                    ),
            );
        },
        shows: 'The assistant rejected the request (no window)',
    },
    {
        name: 'layout-late',
        page,
        answers: { chooselayouterrorfile: { late: true, ...chosen } },
        act: choose,
        shows: 'Choose a file in the open dialog',
        later: 'The document will be added',
    },
    {
        name: 'layout-never',
        page,
        answers: { chooselayouterrorfile: { never: true } },
        act: choose,
        shows: 'Choose a file in the open dialog',
    },
];
