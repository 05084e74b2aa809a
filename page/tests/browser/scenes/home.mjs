const page = 'index.html';

const extensions = {
    vyr: '.docx .docm .doc .dot .dotm .dotx .vyr .vyrx .vyrs .vyro .vyt .vytx .rtf'.split(' '),
    shw: (
        '.pptx .ppt .pptm .pps .pot .potm .potx .ppsx .shd .shdx .sht .shtx .shds ' + '.shdo'
    ).split(' '),
    tbl: '.xlsx .xls .xlsm .xlt .xltm .xltx .tbl .tblx .tbt .tbtx .tbls .tblo'.split(' '),
};
const table = (value, bad = []) => ({
    result: Object.values(extensions).map((names) =>
        Object.fromEntries(
            names.map((name) => [name, bad.includes(name) ? 'other|false' : `${value}|true`]),
        ),
    ),
});
const shortcuts = (icon) => ({
    result: {
        icon,
        mode: 'helio_independ',
        chartboard: false,
        docket: false,
        fixedcomponent: false,
    },
});
const separate = 'vyr-office-shw.desktop|vyr-office-tbl.desktop|vyr-office-vyr.desktop';
const own = { '.config': 'user|user|111-101-101|09:12:44', Orvane: 'user|user|111-101-101|8:00' };
const snapshot = {
    sysinfo: 'Linux 6.1.0',
    vyrinfo: 'Version:12.1.0.1',
    officeinfo: '',
    browserinfo: '',
    fontinfo: '',
    cpuInfo: '',
    envInfo: 'USER=user',
};

const well = {
    exportsysinfo: { result: 'success' },
    inputcheck: { result: 'ERR_OK' },
    getassoopen: table('vyr-office-vyr.desktop'),
    getassomime: table('application/vyr-office'),
    getdesktopiconfile: shortcuts(separate),
    getDumpState: { result: { enable: true, feedback: false } },
    getupdatesupport: { result: false },
    stratextractfileinfo: { result: own },
    stratcheckenv: { result: snapshot },
    getcomputermemory: { result: { percentage: '37.4926', all: '15.5025' } },
    fileassorepair: { result: 'success' },
    fixfouricon: { result: 'success' },
    startDump: { result: 'success' },
};
const ill = {
    ...well,
    inputcheck: { result: 'ERR_NOT_RUNNING' },
    getassoopen: [
        table('vyr-office-vyr.desktop', ['.docx', '.xlsx']),
        table('vyr-office-vyr.desktop'),
    ],
    getdesktopiconfile: shortcuts(''),
    getDumpState: { result: { enable: false, feedback: true } },
    stratextractfileinfo: { result: { ...own, 'Office.conf': 'root|root|110-100-100|17:03' } },
    getcomputermemory: { result: { percentage: '93.1', all: '3.6' } },
};
const check = (view) => view.locator('.checkup-heading .primary').click();

export const scenes = [
    { name: 'home', page, answers: well, shows: 'How can we help?' },
    {
        name: 'home-settings',
        page,
        answers: well,
        act: (view) => view.locator('[aria-haspopup="dialog"]').click(),
        shows: 'Text size',
    },
    {
        name: 'home-veil',
        page,
        answers: well,
        act: (view) => view.evaluate(() => window.hiddentipCallBack({ result: 'show' })),
        shows: 'A tool is open in its own window',
    },
    {
        name: 'home-exported',
        page,
        answers: well,
        act: (view) => view.locator('.report-actions .primary').click(),
        shows: 'The report was saved and opened.',
    },
    { name: 'home-without-host', page, withoutHost: true, shows: 'ordinary browser' },
    { name: 'home-well', page, answers: well, act: check, shows: 'Everything is fine' },
    { name: 'home-findings', page, answers: ill, act: check, shows: '7 things need attention' },
    {
        name: 'home-repaired',
        page,
        answers: ill,
        act: async (view) => {
            await check(view);
            await view.locator('.finding-actions .primary').click();
            await view.locator('.checkup-repaired').waitFor();
        },
        shows: 'Fixed and checked again: documents open with the suite.',
    },
    {
        name: 'home-ignored',
        page,
        answers: { ...well, getcomputermemory: ill.getcomputermemory },
        act: async (view) => {
            await check(view);
            await view.locator('.finding-actions .quiet').click();
            await view.locator('.ignored-findings > button').click();
        },
        shows: 'Memory is almost full',
    },
    {
        name: 'home-failed',
        page,
        answers: {
            ...well,
            getassoopen: { result: 'error' },
            getDumpState: {},
            inputcheck: { refused: 'closing' },
        },
        act: check,
        shows: 'not everything could be checked',
    },
    {
        name: 'home-late',
        page,
        answers: { ...well, getassoopen: { ...well.getassoopen, late: true } },
        act: check,
        shows: '2 of 7: File associations',
        later: 'Everything is fine',
    },
    {
        name: 'home-never',
        page,
        answers: { ...well, getupdatesupport: { never: true } },
        act: check,
        shows: '5 of 7: Updater',
    },
];
