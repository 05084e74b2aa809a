const page = 'processes.html';

const programs = [
    ['vyr', 'user', 31.2, 118.4],
    ['Web Content', 'user', 12.9, 43.1],
    ['plasmashell', 'user', 8.4, 12.5],
    ['Xorg', 'root', 4.1, 9.8],
    ['tbl', 'user', 3.9, 4.0],
    ['fcitx5', 'user', 1.6, 2.1],
    ['baloo_file', 'user', 1.1, 1.9],
    ['shw', 'user', 0.9, 0.4],
    ['systemd', 'root', 0.4, 0.1],
    ['a-program-with-a-rather-long-name', 'messagebus', 0.2, 0.0],
];

function table(sortedBy) {
    const lines = [...programs]
        .sort((first, second) => second[sortedBy] - first[sortedBy])
        .map(([command, user, memory, processor], index) => [
            String(index + 1),
            `${4000 + index} ${user} ${memory} ${processor} ${command}  `,
        ]);
    return { result: [Object.fromEntries(lines)] };
}

export const answers = {
    getcpuinfo: table(3),
    getmemoryinfo: table(2),
    getcomputermemory: [
        { result: { percentage: '37.4926', all: '15.5025' } },
        { result: { percentage: '52.1', all: '15.5025' } },
        { result: { percentage: '64.9', all: '15.5025' } },
    ],
};

/** Reads twice more, so that the chart has something to draw. */
async function readThrice(view) {
    for (const percent of [/52%/, /65%/]) {
        await view.keyboard.press('F5');
        await view.locator('.memory-gauge').getByText(percent).waitFor();
    }
}

const alone = [
    { name: 'processes', page, answers, act: readThrice, shows: '5.4 of 15.5 GiB free' },
    {
        name: 'processes-table',
        page,
        answers,
        act: async (view) => {
            await readThrice(view);
            await view.locator('.history-actions button', { nth: 0 }).click();
            await view.locator('.history-actions button', { nth: 1 }).click();
        },
        shows: 'Paused',
    },
    {
        name: 'processes-full',
        page,
        answers: { ...answers, getcomputermemory: { result: { percentage: '97', all: '3.6' } } },
        shows: 'Almost full',
    },
    {
        name: 'processes-empty',
        page,
        answers: {
            getcpuinfo: { result: [{ 1: '' }] },
            getmemoryinfo: { result: [{ 1: '' }] },
            getcomputermemory: { result: { percentage: 'nan', all: '0' } },
        },
        shows: 'No memory information is available',
    },
    {
        name: 'processes-failed',
        page,
        answers: {
            getcpuinfo: {},
            getmemoryinfo: { result: 'error' },
            getcomputermemory: { result: 'error' },
        },
        shows: 'Memory information could not be read',
    },
    {
        name: 'processes-late',
        page,
        answers: {
            ...answers,
            getcomputermemory: { late: true, result: { percentage: '20', all: '8' } },
        },
        shows: 'Reading processes and memory',
        later: '6.4 of 8.0 GiB free',
    },
    {
        name: 'processes-never',
        page,
        answers: { ...answers, getcomputermemory: { never: true } },
        shows: 'Reading processes and memory',
    },
];

const check = (name, result) => ({ type: 'check', check: `memory.${name}`, result, reason: '' });

export const scenes = [
    ...alone.map((scene) => ({ ...scene, withoutDoctor: true })),
    {
        name: 'processes-by-doctor',
        page,
        answers: {
            ...answers,
            'doctor.look': {
                result: { type: 'summary' },
                lines: [
                    check('full', 'ok'),
                    check('tight', 'finding'),
                    {
                        type: 'finding',
                        finding: 1,
                        check: 'memory.tight',
                        state: 'warning',
                        text: 'Memory is running low.',
                        where: [],
                        repairs: [],
                    },
                ],
            },
        },
        shows: 'Running low',
    },
];
