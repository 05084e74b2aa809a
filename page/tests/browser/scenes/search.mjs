const page = 'search.html';

const base64 = (text) => Buffer.from(text).toString('base64');

export function hit(name, directory) {
    return { callback: 'startsearchfileCallBack', result: { [base64(name)]: base64(directory) } };
}

const finished = { callback: 'searchfilefinish', result: 'success' };
const names = [
    'report.docx',
    '报告 2026.docx',
    'report (2).docx',
    'report (10).docx',
    'annual\u202Excod.report',
    'old report.pdf',
    'report\u0007.txt',
    'Reports',
];
const hits = names.map((name, index) =>
    hit(
        name,
        index % 2
            ? '/home/user/Documents/2026/a folder with a rather long name'
            : '/home/user/文档',
    ),
);
const found = { startsearchfile: { notices: [...hits, finished] } };

/** The first is a folder; each of the others is a million bytes larger than the one before. */
function looks(count) {
    const paths = Array.from({ length: count }, (_, index) => ({
        path: `/home/${index}`,
        exists: true,
        kind: index ? 'file' : 'directory',
        ...(index ? { size: index * 2 ** 20 } : {}),
        changed: `2026-0${1 + index}-11T08:00:00Z`,
    }));
    return { end: 'done', paths };
}

async function search(view, text = 'report') {
    await view.locator('.search-keyword input').fill(text);
    await view.keyboard.press('Enter');
}

async function searchAndSelect(view) {
    await search(view);
    await view.locator('.hit-row', { nth: 1 }).click();
}

export const scenes = [
    { name: 'search', page, shows: 'Enter part of a file' },
    { name: 'search-found', page, answers: found, act: searchAndSelect, shows: '8 found' },
    {
        name: 'search-sorted',
        page,
        answers: found,
        act: async (view) => {
            await search(view);
            await view.locator('.hit-columns .hit-name').click();
            // The order of a person: 2 before 10.
            await view.until(() => {
                const rows = [...document.querySelectorAll('.hit-row')]
                    .sort((one, two) => one.ariaPosInSet - two.ariaPosInSet)
                    .map((row) => row.textContent);
                const place = (text) => rows.findIndex((row) => row.includes(text));
                return place('report (2)') >= 0 && place('report (2)') + 1 === place('report (10)');
            });
        },
        shows: '⟨U+202E⟩',
    },
    {
        name: 'search-looked',
        page,
        offers: ['task.paths'],
        answers: { ...found, 'task.paths': { result: looks(hits.length) } },
        act: async (view) => {
            await search(view);
            await view.locator('.hit-columns .hit-size').click();
            // The largest first; a folder has no size.
            await view.until(() => {
                const rows = [...document.querySelectorAll('.hit-row')]
                    .sort((one, two) => one.ariaPosInSet - two.ariaPosInSet)
                    .map((row) => row.querySelector('.hit-size').textContent);
                return rows[0] === '7 MiB' && rows[1] === '6 MiB' && rows[7] === '';
            });
        },
        shows: '7 MiB',
    },
    {
        name: 'search-filtered',
        page,
        answers: found,
        act: async (view) => {
            await search(view);
            await view.locator('.search-results').waitFor();
            await view.keyboard.press('Control+f');
            await view.locator('.search-filter input:focus').waitFor();
            await view.keyboard.type('2026 docx');
        },
        shows: '2 of 8',
    },
    {
        name: 'search-keys',
        page,
        answers: { ...found, opensearchfile: { result: 'success' } },
        act: async (view) => {
            await search(view);
            await view.locator('.hit-scroller').focus();
            for (const key of ['End', 'ArrowUp', 'Enter']) await view.keyboard.press(key);
            await view.until(() =>
                window.sent.some(
                    ({ command, args }) =>
                        command === 'opensearchfile' &&
                        args.file === '/home/user/文档/report\u0007.txt',
                ),
            );
        },
        shows: 'Opened in its default program',
    },
    {
        name: 'search-unsafe',
        page,
        answers: { ...found, opensearchfile: {} },
        act: async (view) => {
            await search(view);
            await view.locator('.hit-row', { nth: 0 }).dblclick();
        },
        shows: 'opening it could run a program',
    },
    {
        name: 'search-none',
        page,
        answers: { startsearchfile: { notices: [finished] } },
        act: search,
        shows: 'No matching names',
    },
    {
        name: 'search-stopped',
        page,
        answers: {
            startsearchfile: [
                { notices: hits.slice(0, 3) },
                { notices: [hit('too late', '/'), finished] },
            ],
        },
        act: async (view) => {
            await search(view);
            await view.locator('.hit-row').waitFor();
            await view.locator('.search-form button', { nth: 1 }).click();
        },
        shows: 'Search stopped. 3 found',
    },
    {
        name: 'search-failed',
        page,
        answers: { startsearchfile: { refused: 'no search here' } },
        act: search,
        shows: 'The search failed',
    },
    {
        name: 'search-late',
        page,
        answers: {
            startsearchfile: {
                notices: [
                    { ...hits[0], after: 2500 },
                    { ...finished, after: 2600 },
                ],
            },
        },
        act: search,
        shows: 'Searching. Nothing found yet.',
        later: 'Search complete. 1 found',
    },
    {
        name: 'search-never',
        page,
        answers: { startsearchfile: { never: true } },
        act: search,
        shows: 'Searching. Nothing found yet.',
    },
];
