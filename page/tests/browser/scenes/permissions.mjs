import { deniedReason, fix, foreignReason, grantedReason, repairing } from '../explaining.mjs';

const page = 'permissions.html';

const files = {
    '.config': 'user|user|111-101-101|09:12:44',
    'Office.conf': 'root|root|110-100-100|17:03:10',
    Orvane: 'user|user|101-101-101|08:00:01',
};
const answers = {
    stratextractfileinfo: { result: files },
    stratcheckenv: {
        result: {
            sysinfo: 'Linux 6.1.0',
            vyrinfo: 'Version:12.1.0.1',
            officeinfo: '',
            browserinfo: '',
            fontinfo: '',
            cpuInfo: '',
            envInfo: 'HOME=/home/user|USER=user',
        },
    },
    addconfigfile: { result: 'success' },
    exportoftenfileperm: { result: 'success' },
    exportspecialfileperm: { result: 'error' },
};

const checks = [
    ...['foreign', 'foreign-open', 'nameless', 'unreadable', 'read-only', 'closed', 'open'],
].map((name) => `permissions.${name}`);
const finding = {
    type: 'finding',
    finding: 1,
    check: 'permissions.foreign',
    state: 'bad',
    text: '/home/user/.config/Orvane/Office.conf belongs to root: the suite cannot save your settings.',
    where: [{ path: '/home/user/.config/Orvane/Office.conf' }],
    repairs: ['take-over'],
};
const look = {
    result: { type: 'summary' },
    lines: [
        ...checks.map((check) => ({ type: 'check', check, result: 'ok', reason: '' })),
        finding,
    ],
};

const alone = [
    {
        name: 'permissions-by-commands',
        page,
        answers,
        shows: 'It belongs to root, not to you (user)',
    },
    {
        name: 'permissions-added',
        page,
        answers: {
            ...answers,
            stratextractfileinfo: [
                { result: files },
                { result: { ...files, 'not\u202Es.txt': '|users|110-100-110|11:59:59' } },
            ],
        },
        act: async (view) => {
            await view.locator('.state-mark.bad').waitFor();
            await view.locator('.permission-actions .el-button--primary').click();
        },
        shows: 'The file was added.',
    },
    {
        name: 'permissions-empty',
        page,
        answers: { ...answers, stratextractfileinfo: { result: {} } },
        shows: 'There are no files in the list.',
    },
    {
        name: 'permissions-missing',
        page,
        answers: {
            ...answers,
            stratextractfileinfo: {
                result: { '.config': 'user|user|111-101-101|09:12:44', Orvane: '|||' },
            },
        },
        shows: 'There is no file or folder with this name.',
    },
    {
        name: 'permissions-failed',
        page,
        answers: { ...answers, stratextractfileinfo: { result: 'error' } },
        shows: 'The permissions could not be read',
    },
    {
        name: 'permissions-unanswered',
        page,
        answers: { ...answers, stratextractfileinfo: {} },
        shows: 'The assistant did not answer.',
    },
    {
        name: 'permissions-late',
        page,
        answers: { ...answers, stratcheckenv: { ...answers.stratcheckenv, late: true } },
        shows: 'Finding out which user the assistant runs as.',
        later: 'It belongs to root, not to you (user)',
    },
    {
        name: 'permissions-never',
        page,
        answers: { ...answers, stratextractfileinfo: { never: true } },
        shows: 'Reading permissions.',
    },
];

const described = (path, more = {}) => ({
    path,
    exists: true,
    kind: 'file',
    mode: '0644',
    owner: 'user',
    group: 'user',
    changed: '2024-03-01T10:20:30Z',
    ...more,
});
const looked = {
    'task.paths': {
        result: {
            end: 'done',
            paths: [
                described('~/.config/Orvane/Office.conf'),
                described('~/.config', { kind: 'directory', mode: '0755' }),
                described('~/.config/Orvane', { kind: 'directory', mode: '0555' }),
                described('/home/user/My own\u202E list.conf', { mode: '0640' }),
            ],
        },
    },
    'task.choose': { result: { end: 'done', file: '/home/user/My own list.conf' } },
    'task.listing': { result: { end: 'done', file: '/home/user/my list.txt' } },
    'doctor.look': look,
    'why.denied': [grantedReason, grantedReason, deniedReason, ...Array(20).fill(grantedReason)],
    stratcheckenv: answers.stratcheckenv,
};

const inOwnShell = [
    { name: 'permissions', page, answers: looked, shows: '-rw-r--r-- (0644)' },
    {
        name: 'permissions-chosen',
        page,
        answers: looked,
        act: async (view) => {
            await view.locator('.state-mark.bad').waitFor();
            await view.locator('.permission-actions .el-button--primary').click();
        },
        shows: 'The file was added.',
    },
    {
        name: 'permissions-list-saved',
        page,
        answers: looked,
        act: async (view) => {
            await view.locator('.state-mark.bad').waitFor();
            await view.locator('.permission-actions .el-button:not(.el-button--primary)').click();
        },
        shows: 'Saved and read back: /home/user/my list.txt',
    },
    {
        name: 'permissions-list-not-saved',
        page,
        answers: {
            ...looked,
            'task.listing': { result: { end: 'failed', reason: '/x cannot be written: no.' } },
        },
        act: async (view) => {
            await view.locator('.state-mark.bad').waitFor();
            await view.locator('.permission-actions .el-button:not(.el-button--primary)').click();
        },
        shows: '/x cannot be written: no.',
    },
];

export const scenes = [
    ...inOwnShell.map((scene) => ({ ...scene, looks: true, explained: true })),
    ...alone.map((scene) => ({ ...scene, withoutDoctor: true })),
    {
        name: 'permissions-explained',
        page,
        explained: true,
        answers: {
            ...answers,
            'doctor.look': look,
            'why.denied': [grantedReason, grantedReason, deniedReason, foreignReason],
        },
        act: (view) => view.locator('.repair-offer .ask-once-start').click(),
        shows: 'does not let you pass through it',
    },
    {
        name: 'permissions-explained-fixed',
        page,
        explained: true,
        answers: {
            ...answers,
            ...repairing,
            'doctor.look': look,
            'why.denied': [deniedReason, ...Array(20).fill(grantedReason)],
        },
        act: fix,
        shows: 'Fixed and checked again.',
    },
    {
        name: 'permissions-by-doctor',
        page,
        answers: { ...answers, 'doctor.look': look },
        shows: finding.text,
    },
    {
        name: 'permissions-doctor-failed',
        page,
        answers: { ...answers, 'doctor.look': { refused: 'closing' } },
        shows: 'It belongs to root, not to you (user)',
    },
];
