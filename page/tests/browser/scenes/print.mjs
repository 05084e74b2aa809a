const page = 'print.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const printed = { result: base64('/home/user/Documents/report.final.docx') };

const picture = `data:image/svg+xml;base64,${base64(
    '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 210 297">' +
        '<rect width="210" height="297" fill="#fff"/><rect x="25" y="30" width="160" height="12"/>' +
        '<rect x="25" y="60" width="160" height="4"/><rect x="25" y="72" width="120" height="4"/></svg>',
)}`;
const look = { exists: true, size: 9, changed: '2026-01-01T00:00:00Z', picture };
const pictured = {
    offers: ['task.print', 'task.preview', 'window.dropped'],
    answers: {
        'task.print': {
            result: { end: 'done', document: '/home/user/a.docx', file: '/home/user/a.pdf' },
        },
        'task.preview': { result: { end: 'done', ...look } },
        'window.dropped': { result: { paths: ['/home/user/photo.jpg'] } },
    },
};

function drop(view) {
    return view.evaluate(() => {
        const dataTransfer = new DataTransfer();
        dataTransfer.items.add(new File(['x'], 'photo.jpg'));
        const event = new DragEvent('drop', { dataTransfer, bubbles: true, cancelable: true });
        document.body.dispatchEvent(event);
    });
}

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
    { name: 'print-pictured', page, ...pictured, act: choose, shows: 'First page of the PDF' },
    {
        name: 'print-without-picture',
        page,
        ...pictured,
        answers: {
            ...pictured.answers,
            'task.preview': { result: { end: 'done', ...look, picture: '' } },
            opensearchfile: { result: 'success' },
        },
        act: choose,
        shows: 'The PDF was opened.',
    },
    {
        name: 'print-compared',
        page,
        ...pictured,
        act: async (view) => {
            await choose(view);
            await view.locator('.page-drop').waitFor();
            await drop(view);
        },
        shows: 'Expected: photo.jpg',
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
