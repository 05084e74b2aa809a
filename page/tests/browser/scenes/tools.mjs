const page = 'tools.html';

const answers = {
    stoppreload: { result: 'success' },
    restartpreload: { result: 'success' },
    screenshots: { result: 'success' },
    recordscreen: { result: 'success' },
    contentreplace: { result: 'success' },
    apilog: { result: 'success' },
};
const press = (index) => (view) => view.locator('.action-card .el-button', { nth: index }).click();

export const scenes = [
    { name: 'tools', page, answers, shows: 'Stop preloading' },
    { name: 'tools-done', page, answers, act: press(3), shows: 'The recorder was told to start.' },
    {
        name: 'tools-failed',
        page,
        answers: { ...answers, stoppreload: { result: 'error' } },
        act: press(0),
        shows: 'That did not work.',
    },
    {
        name: 'tools-unanswered',
        page,
        answers: { ...answers, apilog: {} },
        act: press(5),
        shows: 'The assistant did not answer.',
    },
    {
        name: 'tools-late',
        page,
        answers: { ...answers, screenshots: { late: true, result: 'success' } },
        act: press(2),
        shows: 'Please wait',
        later: 'The picture should be in your pictures folder',
    },
    {
        name: 'tools-never',
        page,
        answers: { ...answers, restartpreload: { never: true } },
        act: press(1),
        shows: 'Please wait',
    },
];
