const page = 'layout.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const chosen = { result: base64('/home/user/Documents/r\u202Eeport.docx') };

const choose = (view) => view.locator('.el-button--primary').click();
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
