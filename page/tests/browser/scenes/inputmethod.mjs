import { fix, inputReason, repairing, unneededInput } from '../explaining.mjs';

const page = 'inputmethod.html';

const environment =
    'QT_IM_MODULE=fcitx|XMODIFIERS=@im=ibus|XDG_CURRENT_DESKTOP=KDE' + '|XDG_SESSION_TYPE=x11';
const answers = {
    inputcheck: { result: 'ERR_OK' },
    stratcheckenv: {
        result: {
            sysinfo: 'Linux 6.1.0',
            vyrinfo: 'Version:12.1.0.1',
            officeinfo: '',
            browserinfo: '',
            fontinfo: '',
            cpuInfo: '',
            envInfo: environment,
        },
    },
};
const answering = (result) => ({ ...answers, inputcheck: { result } });

export const scenes = [
    {
        name: 'inputmethod-explained',
        page,
        explained: true,
        answers: { ...answering('ERR_INVALID_ENV_CONFIG'), 'why.input': inputReason },
        act: (view) => view.locator('.repair-offer .ask-once-start').click(),
        shows: 'XMODIFIERS names fcitx, but ibus is running.',
    },
    {
        name: 'inputmethod-explained-fixed',
        page,
        explained: true,
        answers: { ...answers, ...repairing, 'why.input': inputReason },
        act: fix,
        shows: 'Log out and in so that it counts.',
    },
    {
        name: 'inputmethod-unneeded',
        page,
        explained: true,
        answers: { ...answering('ERR_LOADPLUGIN_FAILED'), 'why.input': unneededInput },
        shows: 'Not required',
    },
    {
        name: 'inputmethod-unexplained',
        page,
        explained: true,
        answers: { ...answers, 'why.input': { refused: 'closing' } },
        shows: 'The cause could not be found out',
    },
    { name: 'inputmethod', page, answers, shows: 'The input method is ready' },
    {
        name: 'inputmethod-plugin',
        page,
        answers: answering('ERR_LOADPLUGIN_FAILED'),
        shows: 'sudo apt install fcitx5',
    },
    {
        name: 'inputmethod-not-running',
        page,
        answers: answering('ERR_NOT_RUNNING'),
        act: (view) => view.locator('.choice', { hasText: 'dnf' }).click(),
        shows: 'sudo dnf install fcitx5',
    },
    {
        name: 'inputmethod-bus',
        page,
        answers: answering('ERR_NOT_FIND_BUSCONFIG'),
        shows: 'The suite cannot find ibus',
    },
    {
        name: 'inputmethod-disagree',
        page,
        answers: answering('ERR_INVALID_ENV_CONFIG'),
        shows: 'Two different input methods are set',
    },
    {
        name: 'inputmethod-translated',
        page,
        answers: answering('输入法插件加载失败'),
        shows: '输入法插件加载失败',
    },
    {
        name: 'inputmethod-failed',
        page,
        answers: answering('error'),
        shows: 'The input method could not be checked',
    },
    {
        name: 'inputmethod-unanswered',
        page,
        answers: { ...answers, inputcheck: {}, stratcheckenv: {} },
        shows: 'The variables could not be read',
    },
    {
        name: 'inputmethod-late',
        page,
        answers: { ...answers, inputcheck: { late: true, result: 'ERR_OK' } },
        shows: 'Checking the input method.',
        later: 'The input method is ready',
    },
    {
        name: 'inputmethod-never',
        page,
        answers: { ...answers, inputcheck: { never: true } },
        shows: 'Checking the input method.',
    },
];
