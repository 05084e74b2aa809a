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
const start = (view) => view.locator('.check-start .el-button--primary').click();

export const scenes = [
    { name: 'environmentcheck', page, answers, shows: 'No checks have been run' },
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
];
