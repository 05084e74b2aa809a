const page = 'missingfonts.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const chosen = { result: base64('/home/user/Documents/report.docx') };
const missing = (list) => ({ result: { MissFonts: base64(list) } });
const someFonts = 'Calibri;宋体;Brand Face\u202E;DejaVu Sans Condensed;Calibri';

const choose = (view) => view.locator('.el-button--primary').click();

export const scenes = [
    { name: 'missingfonts', page, shows: 'Choose a document that looks wrong' },
    {
        name: 'missingfonts-found',
        page,
        answers: { choosesamplefile: chosen, comparefont: missing(someFonts) },
        act: choose,
        shows: 'sudo apt-get install fonts-crosextra-carlito fonts-dejavu-extra fonts-noto-cjk',
    },
    {
        name: 'missingfonts-sampled',
        page,
        offers: ['task.substitutes'],
        answers: {
            choosesamplefile: chosen,
            comparefont: missing('Georgia;Brand Face'),
            'task.substitutes': {
                result: {
                    end: 'done',
                    families: {
                        Georgia: 'DejaVu Sans Mono',
                        'Brand Face': 'DejaVu Sans',
                        'DejaVu Serif': 'DejaVu Serif',
                    },
                    packages: ['fonts-dejavu-core'],
                },
            },
        },
        act: choose,
        shows: /\d+% (wider|narrower) than meant/,
    },
    {
        name: 'missingfonts-dropped',
        page,
        offers: ['window.dropped'],
        answers: {
            comparefont: missing('Brand Face'),
            'window.dropped': { result: { paths: ['/home/user/dropped report.docx'] } },
        },
        act: (view) =>
            view.evaluate(() => {
                const dataTransfer = new DataTransfer();
                dataTransfer.items.add(new File(['x'], 'dropped report.docx'));
                for (const type of ['dragover', 'drop']) {
                    const event = new DragEvent(type, {
                        dataTransfer,
                        bubbles: true,
                        cancelable: true,
                    });
                    document.body.dispatchEvent(event);
                }
            }),
        shows: 'dropped report.docx',
    },
    {
        name: 'missingfonts-unknown',
        page,
        answers: { choosesamplefile: chosen, comparefont: missing('Brand Face') },
        act: choose,
        shows: 'No known package provides these fonts',
    },
    {
        name: 'missingfonts-none',
        page,
        answers: { choosesamplefile: chosen, comparefont: missing('') },
        act: choose,
        shows: 'All fonts of the document are installed',
    },
    {
        name: 'missingfonts-cancelled',
        page,
        answers: { choosesamplefile: { result: 'error' } },
        act: choose,
        shows: 'No file was chosen.',
    },
    {
        name: 'missingfonts-failed',
        page,
        answers: { choosesamplefile: chosen, comparefont: { result: 'error' } },
        act: choose,
        shows: 'The document could not be read: it may be damaged',
    },
    {
        name: 'missingfonts-blanks',
        page,
        answers: {
            choosesamplefile: { result: base64('/home/user/My documents/a.docx') },
            comparefont: { result: 'error' },
        },
        act: choose,
        shows: 'Its path contains a space',
    },
    {
        name: 'missingfonts-wrong-type',
        page,
        answers: { choosesamplefile: { result: base64('/home/user/picture.png') } },
        act: choose,
        shows: 'cannot check this type of document',
    },
    {
        name: 'missingfonts-unanswered',
        page,
        answers: { choosesamplefile: chosen, comparefont: {} },
        act: choose,
        shows: 'The assistant did not answer',
    },
    {
        name: 'missingfonts-late',
        page,
        answers: { choosesamplefile: chosen, comparefont: { late: true, ...missing('Arial') } },
        act: choose,
        shows: 'The suite is checking the document',
        later: 'One font is missing.',
    },
    {
        name: 'missingfonts-never',
        page,
        answers: { choosesamplefile: { never: true } },
        act: choose,
        shows: 'Choose a file in the open dialog',
    },
];
