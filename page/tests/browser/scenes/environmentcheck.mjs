const page = 'environmentcheck.html';

const base64 = (text) => Buffer.from(text, 'utf8').toString('base64');
const finding = (value, cmd = 'libraries', app = 'vyr') => [
    { callback: 'returnvyrenvcheck', result: { value: base64(value), cmd, app }, after: 50 },
];
const answers = {
    getvyrenvcheckedresult: { result: 'error' },
    vyrenvcheck: {
        result: 'success',
        notices: finding('libcups.so.2 is missing\nAll else was found.\n'),
    },
    runfirefoxplugin: { result: 'success' },
};
const start = (view) => view.locator('.check-start .check-one').click();
const answer = (value) => ({ result: { end: 'done', reason: '', file: '', value } });
const bad =
    '✘ One problem was found.\n✘ The printing service (CUPS) does not answer. ' +
    'Start it with “sudo systemctl start cups”.\n✔ The spool directory has room.';
const everything = {
    ...answers,
    'task.findings': { result: { findings: {} } },
    'task.cancel': { result: {} },
    'task.check': [
        answer(bad),
        answer('✔ No problem was found.\n⚠ No input method is chosen.'),
        { result: { end: 'failed', reason: 'The check tool ended without an answer.', file: '' } },
        answer('✔ No problem was found.'),
    ],
};
const startAll = (view) => view.locator('.check-everything').click();

export const scenes = [
    { name: 'environmentcheck-command', page, answers, shows: 'No checks have been run' },
    { name: 'environmentcheck-found', page, answers, act: start, shows: 'libcups.so.2 is missing' },
    {
        name: 'environmentcheck-earlier',
        page,
        answers: {
            ...answers,
            getvyrenvcheckedresult: {
                result: { 'fonts-tbl': 'ok', 'plugins-vyr': 'none found', 'own-check-shw': '' },
            },
        },
        shows: 'none found',
    },
    {
        name: 'environmentcheck-other',
        page,
        answers,
        act: (view) => view.locator('.choice', { hasText: /Other check|其他检查/ }).click(),
        shows: 'Name of the check',
    },
    {
        name: 'environmentcheck-empty',
        page,
        answers: { ...answers, vyrenvcheck: { result: 'success', notices: finding('') } },
        act: start,
        shows: 'The check tool gave no answer.',
    },
    {
        name: 'environmentcheck-failed',
        page,
        answers: { ...answers, vyrenvcheck: { refused: 'closing' } },
        act: start,
        shows: 'The check gave no result',
    },
    {
        name: 'environmentcheck-unanswered',
        page,
        answers: { ...answers, getvyrenvcheckedresult: {} },
        shows: 'Earlier results could not be read',
    },
    {
        name: 'environmentcheck-late',
        page,
        answers: {
            ...answers,
            vyrenvcheck: {
                result: 'success',
                notices: [{ ...finding('all found')[0], after: 1500 }],
            },
        },
        act: start,
        shows: 'Checking Writer: Shared libraries.',
        later: 'all found',
    },
    {
        name: 'environmentcheck-never',
        page,
        answers: { ...answers, vyrenvcheck: { result: 'success' } },
        act: start,
        shows: 'Checking Writer: Shared libraries.',
    },
    {
        name: 'environmentcheck-plugins',
        page,
        answers,
        act: (view) => view.locator('.tool-page-actions .el-button').click(),
        shows: 'opens in your web browser',
    },
    {
        name: 'environmentcheck',
        page,
        checksAll: true,
        answers: everything,
        act: startAll,
        shows: 'One check found a problem.',
    },
    {
        name: 'environmentcheck-everything-running',
        page,
        checksAll: true,
        answers: {
            ...everything,
            'task.check': [answer(bad), { ...answer('✔ No problem was found.'), late: true }],
        },
        act: startAll,
        shows: '2 of 30 checks',
        later: 'One check found a problem.',
    },
];
