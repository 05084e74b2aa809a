import { change } from '../watching.mjs';

const page = 'libreoffice.html';
const root = '/home/user/.config/libreoffice/4';

const installation = (folder, version, chosen) => ({
    type: 'suite',
    suite: 'libreoffice',
    name: 'LibreOffice',
    version,
    source: 'package',
    folder,
    profile: `${root}/user`,
    components: ['calc', 'impress', 'writer'],
    languages: ['de', 'en-US'],
    plugins: ['gen', 'gtk3'],
    chosen,
});
const extension = (name, owner, uses, faults) => ({
    name,
    version: '1.2',
    owner,
    path: `/x/${name}`,
    uses,
    faults,
});

export const described = {
    installations: [installation('/usr/lib/libreoffice', '7.4', true)],
    state: 'ready',
    processes: [],
    profile: {
        path: `${root}/user`,
        exists: true,
        complete: true,
        size: 8_412_000,
        parts: [
            ['settings', 412_000],
            ['extensions', 7_200_000],
            ['dictionaries', 2_100],
            ['templates', 640_000],
            ['copies', 157_900],
        ].map(([part, size]) => ({ part, names: [part], size, files: 3 })),
        copies: 2,
        lastCopy: '2026-03-01T09:15:00Z',
        earlier: '',
    },
    extensions: [
        extension('org.example.tools', 'user', ['runs Python code'], []),
        extension('org.example.old', 'user', [], ['this LibreOffice is older than it needs']),
    ],
    graphics: { plugin: 'gtk3', forced: false, skia: false, openCl: null },
};
const moved = { ...change('move', `${root}/user/registrymodifications.xcu`), target: `${root}/x` };
const plan = { result: { plan: 5, changes: [moved], refusal: '' } };
const answers = {
    'suite.describe': { result: described },
    'suite.plan': plan,
    'doctor.fix': { result: { result: 'repaired', journal: 4, reason: '' } },
    'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
};
const again = { ...described, profile: { ...described.profile, earlier: `${root}/user.before-1` } };
const preview = (view) => view.locator('.reset-preview').click();

export const scenes = [
    { name: 'libreoffice', page, suited: true, answers, shows: 'The suite keeps 2 good copies' },
    {
        name: 'libreoffice-planned',
        page,
        suited: true,
        answers,
        act: preview,
        shows: 'registrymodifications.xcu',
    },
    {
        name: 'libreoffice-reset',
        page,
        suited: true,
        answers: { ...answers, 'suite.describe': [{ result: described }, { result: again }] },
        act: async (view) => {
            await preview(view);
            await view.locator('.reset-plan button').click();
        },
        shows: 'Preview bringing the earlier profile back',
    },
    {
        name: 'libreoffice-measured',
        page,
        suited: true,
        measured: true,
        answers: {
            ...answers,
            'task.start': {
                result: {
                    end: 'done',
                    reason: '',
                    file: '',
                    clean: 812,
                    own: 1904,
                    parts: [
                        { part: 'extensions', saved: 930 },
                        { part: 'recent', saved: 120 },
                        { part: 'settings', saved: 140 },
                    ],
                },
            },
        },
        act: async (view) => view.locator('.start-measure').click(),
        shows: 'Your profile costs 1.09 sec',
    },
    {
        name: 'libreoffice-running',
        page,
        suited: true,
        answers: {
            'suite.describe': { result: { ...described, state: 'running', processes: [712] } },
            'suite.plan': {
                result: { plan: 0, changes: [], refusal: 'LibreOffice (process 712) is running' },
            },
        },
        act: preview,
        shows: 'LibreOffice (process 712) is running',
    },
    {
        name: 'libreoffice-several',
        page,
        suited: true,
        answers: {
            'suite.describe': {
                result: {
                    ...described,
                    installations: [
                        installation('/usr/lib/libreoffice', '7.4', false),
                        installation('/opt/libreoffice24.2', '24.2', true),
                    ],
                    state: 'unused',
                    profile: { ...described.profile, exists: false, parts: [], lastCopy: '' },
                    extensions: [],
                },
            },
        },
        shows: 'LibreOffice 24.2 in /opt/libreoffice24.2',
    },
    {
        name: 'libreoffice-none',
        page,
        suited: true,
        answers: { 'suite.describe': { result: { installations: [] } } },
        shows: 'No office suite was found',
    },
    {
        name: 'libreoffice-unoffered',
        page,
        withoutDoctor: true,
        answers: {},
        shows: 'could not be',
    },
];
