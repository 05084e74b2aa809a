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
    { name: 'processes-largest', page, answers, act: readThrice, shows: '5.4 of 15.5 GiB free' },
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

const megabyte = 1024 * 1024;

function listed(id, program, megabytes, processorTime, more = {}) {
    return {
        id,
        start: `${id}0`,
        user: 'user',
        isOwn: true,
        program,
        command: `/usr/lib/${program}`,
        memory: megabytes * megabyte,
        processorTime,
        ...more,
    };
}

const icon =
    'data:image/svg+xml;base64,PHN2ZyB4bWxucz0iaHR0cDovL3d3dy53My5vcmcvMjAwMC9zdmciIHZpZXdCb3g9IjAgMCAxIDEiPjxyZWN0IHdpZHRoPSIxIiBoZWlnaHQ9IjEiIGZpbGw9IiMzYTciLz48L3N2Zz4=';

/** A reading after `seconds` of one in which everything had just started. */
function reading(seconds) {
    return {
        result: {
            end: 'done',
            reason: '',
            file: '',
            processes: [
                listed(4000, 'soffice.bin', 812, seconds * 430),
                listed(4100, 'chromium', 420, seconds * 1180),
                listed(4101, 'chromium', 260, seconds * 35),
                listed(4102, 'chromium', 130, 0),
                listed(4200, 'plasmashell', 310, seconds * 12),
                listed(4300, 'fcitx5', 41, 0),
                listed(900, 'Xorg', 180, seconds * 70, { user: 'root', isOwn: false }),
                listed(1, 'systemd', 12, 0, { user: 'root', isOwn: false }),
            ],
            memory: {
                total: 15872 * megabyte,
                available: 9216 * megabyte,
                swapTotal: 2048 * megabyte,
                swapFree: 1843 * megabyte,
            },
            load: [0.8, 1.4, 0.9],
            pressure: { cpu: [3.1, 2, 1.5], memory: [0, 0, 0], io: [1, 4.5, 2] },
            processors: 4,
        },
    };
}

const ended = (how) => ({ result: { end: 'done', reason: '', file: '', ...how } });

export const allAnswers = {
    'doctor.look': { result: { type: 'summary' } },
    'task.processes': [reading(1), reading(6), reading(11)],
    'task.programs': ended({
        programs: {
            'soffice.bin': { title: 'LibreOffice', icon },
            chromium: { title: 'Chromium', icon },
        },
    }),
    'task.end': ended({ ended: true }),
};

async function endTheLargest(view) {
    await view.locator('.ask-once-start', { nth: 0 }).click();
    await view.locator('.ask-once-confirm').click();
}

const listing = [
    { name: 'processes', answers: allAnswers, shows: 'LibreOffice' },
    {
        name: 'processes-all-opened',
        answers: allAnswers,
        act: (view) => view.getByText('3 processes').click(),
        shows: 'Process 4101',
    },
    {
        name: 'processes-all-filtered',
        answers: allAnswers,
        act: (view) => view.locator('input[placeholder="Filter programs"]').fill('4102'),
        shows: 'Process 4102',
    },
    { name: 'processes-all-ended', answers: allAnswers, act: endTheLargest, shows: 'has ended' },
    {
        name: 'processes-all-stubborn',
        answers: { ...allAnswers, 'task.end': ended({ ended: false }) },
        act: endTheLargest,
        shows: 'End now',
    },
    {
        name: 'processes-all-refused',
        answers: {
            ...allAnswers,
            'task.end': ended({ end: 'failed', reason: 'This process has ended already.' }),
        },
        act: endTheLargest,
        shows: 'The process could not be ended',
    },
];

const check = (name, result) => ({ type: 'check', check: `memory.${name}`, result, reason: '' });

export const scenes = [
    ...alone.map((scene) => ({ ...scene, withoutDoctor: true })),
    ...listing.map((scene) => ({ ...scene, page, lists: true })),
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
