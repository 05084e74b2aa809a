const page = 'print.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const printed = { result: base64('/home/user/Documents/report.final.docx') };

const choose = (view) => view.locator('.el-button--primary').click();

export const scenes = [
    { name: 'print', page, shows: 'The suite prints the document that you choose' },
    {
        name: 'print-printed',
        page,
        answers: { openprinterrorfile: printed },
        act: choose,
        shows: 'Compare report.pdf with the paper',
    },
    {
        name: 'print-judged',
        page,
        answers: { openprinterrorfile: printed },
        act: async (view) => {
            await choose(view);
            await view.locator('input[value="right"]').check();
        },
        shows: 'the printer or its driver is the cause',
    },
    {
        name: 'print-handed-over',
        page,
        answers: { openprinterrorfile: printed, router: { refused: 'no window' } },
        act: async (view) => {
            await choose(view);
            await view.locator('input[value="wrong"]').check();
            await view.locator('.step-card:nth-child(3) button').click();
            await view.until(() =>
                window.sent.some(
                    ({ command, args }) => command === 'feedbacktovyr' && args.infopage === 'print',
                ),
            );
        },
        shows: 'The assistant rejected the request (no window)',
    },
    {
        name: 'print-failed',
        page,
        answers: { openprinterrorfile: { result: 'error' } },
        act: choose,
        shows: 'No document was chosen, or',
    },
    {
        name: 'print-unanswered',
        page,
        answers: { openprinterrorfile: {} },
        act: choose,
        shows: 'The assistant did not answer',
    },
    {
        name: 'print-late',
        page,
        answers: { openprinterrorfile: { late: true, ...printed } },
        act: choose,
        shows: 'Choose a document in the file dialog',
        later: 'The suite was asked to print the document',
    },
    {
        name: 'print-never',
        page,
        answers: { openprinterrorfile: { never: true } },
        act: choose,
        shows: 'Choose a document in the file dialog',
    },
];
