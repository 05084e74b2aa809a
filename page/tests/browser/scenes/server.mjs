const page = 'server.html';

const base64 = (text) => Buffer.from(text).toString('base64');
const errorPage =
    '<html><head><title>Not found</title></head>\n<body>\n' +
    '<script>alert("never run")</script>\n<h1>Nothing here\u202E</h1>\n</body></html>';

const cell = (view, number) => view.locator('.request-row input', { nth: number });
const url = '.request-field:first-child input';

const timed = {
    end: 'done',
    status: 200,
    problem: '',
    times: { name: 12.4, connect: 31, encrypt: 92, firstByte: 410, whole: 655 },
    size: 48_211,
    address: '192.0.2.7',
    protocol: '2',
    headers: [
        { name: 'content-type', value: 'application/octet-stream' },
        { name: 'x-odd', value: 'before\u202Eafter' },
    ],
    body: 'the document',
};
const silent = {
    ...timed,
    status: 0,
    problem: 'Could not resolve host: server.example',
    times: { name: 0, connect: 0, encrypt: 0, firstByte: 0, whole: 21 },
    size: 0,
    headers: [],
    body: '',
};

async function send(view) {
    await view.locator(url).fill('https://server.example/documents/1');
    await view.locator('.server-send button').click();
}

/** A save as a form with a header and a field. */
async function fillForm(view) {
    await view.locator(url).fill('https://server.example/save');
    await view.locator('input[value="saveURL_FormData"]').check();
    await view.locator('.request-rows', { nth: 0 }).locator('.el-button').click();
    await cell(view, 0).fill('X-Session');
    await cell(view, 1).fill('12 34');
    await view.locator('.request-rows', { nth: 1 }).locator('.el-button').click();
    await cell(view, 2).fill('documentId');
    await cell(view, 3).fill('文档');
}

export const scenes = [
    { name: 'server', page, shows: 'Enter an address first.' },
    {
        name: 'server-form',
        page,
        act: fillForm,
        shows: 'Content-Disposition: form-data; name="documentId"',
    },
    {
        name: 'server-separator',
        page,
        act: async (view) => {
            await fillForm(view);
            await cell(view, 1).fill('http://referrer');
        },
        shows: 'cannot be sent here',
    },
    {
        name: 'server-other',
        page,
        act: async (view) => {
            await view.locator(url).fill('http://127.0.0.1/save');
            await view.locator('input[name="server-function"][value=""]').check();
        },
        shows: 'Enter a function name first.',
    },
    {
        name: 'server-timed',
        page,
        offers: ['task.request'],
        answers: { 'task.request': { result: timed } },
        act: async (view) => {
            await send(view);
            await view.locator('.answer-headers summary').click();
        },
        shows: '245 ms',
    },
    {
        name: 'server-timed-silent',
        page,
        offers: ['task.request'],
        answers: { 'task.request': { result: silent } },
        act: send,
        shows: 'Could not resolve host',
    },
    {
        name: 'server-timed-again',
        page,
        offers: ['task.request'],
        answers: { 'task.request': { result: timed } },
        act: async (view) => {
            await fillForm(view);
            await cell(view, 1).fill('http://referrer; and more');
            await view.locator('.server-send button').click();
            await view.locator('.request-history').waitFor();
            await view.locator(url).fill('https://other.example');
            await view.locator('.request-history button').click();
        },
        shows: 'POST https://server.example/save',
    },
    {
        name: 'server-success',
        page,
        answers: { openremoveurlcheck: { result: 'success' } },
        act: send,
        shows: 'The server answered without an error.',
    },
    {
        name: 'server-not-found',
        page,
        answers: { openremoveurlcheck: { result: base64(`404:${errorPage}`) } },
        act: send,
        shows: '<script>alert("never run")</script>',
    },
    {
        name: 'server-silent',
        page,
        answers: { openremoveurlcheck: { result: base64('0:') } },
        act: send,
        shows: 'The server did not answer. Check the address',
    },
    {
        name: 'server-incomplete',
        page,
        answers: { openremoveurlcheck: { result: 'parame error' } },
        act: send,
        shows: 'Address and function are required',
    },
    {
        name: 'server-unanswered',
        page,
        answers: { openremoveurlcheck: {} },
        act: send,
        shows: 'The request was not sent',
    },
    {
        name: 'server-late',
        page,
        answers: { openremoveurlcheck: { late: true, result: 'success' } },
        act: send,
        shows: 'Waiting for the server',
        later: 'The server answered without an error.',
    },
    {
        name: 'server-never',
        page,
        answers: { openremoveurlcheck: { never: true } },
        act: send,
        shows: 'Waiting for the server',
    },
];
