const page = 'compare.html';

const report = (number, host) => ({
    type: 'compares',
    number,
    host,
    user: 'ann',
    made: '2026-03-02T09:12:44Z',
});
const difference = (group, names, weight, values, deviating = []) => ({
    type: 'difference',
    group,
    names,
    weight,
    values,
    deviating,
    reason: 'This variable changes how programs load, draw or type.',
});
const plugin = difference('environment', ['SAL_USE_VCLPLUGIN'], 'high', [null, 'gen']);
const fonts = difference(
    'fonts',
    ['Arimo', 'Caladea', 'Carlito', 'Cousine', 'Gelasio', 'Tinos'],
    'low',
    ['', '1.0'],
);

const done = { end: 'done', reason: '', file: '', opened: false };

function answer(reports, differences, outlier) {
    const compared = {
        type: 'compared',
        reports: reports.length,
        differences: differences.length,
        outlier,
    };
    const lines = [...reports.map((host, index) => report(index, host)), ...differences, compared];
    return { result: { ...done, problems: reports.map(() => ''), lines } };
}

/** Drops files of those names. */
const drop =
    (...names) =>
    (view) =>
        view.evaluate((dropped) => {
            const dataTransfer = new DataTransfer();
            for (const name of dropped) dataTransfer.items.add(new File([`{"${name}"}`], name));
            document
                .querySelector('.drop-place')
                .dispatchEvent(new DragEvent('drop', { dataTransfer }));
        }, names);

function scene(name, compared, shows, act = drop('bad.json')) {
    return {
        name: `compare${name}`,
        page,
        answers: { 'task.compare': compared },
        act,
        shows,
        compares: true,
    };
}

export const scenes = [
    { name: 'compare', page, shows: 'assistantctl report > report.json', compares: true },
    scene(
        '-found',
        answer(['here\n<b>', 'desk-31'], [plugin, fonts]),
        'One thing differs and can matter.',
    ),
    scene('-same', answer(['here', 'desk-31'], []), 'Nothing that can matter differs.'),
    scene(
        '-outlier',
        answer(
            ['here', 'desk-12', 'desk-31'],
            [difference('packages', ['office'], 'medium', ['1', '1', '2'], [2]), fonts],
            2,
        ),
        'The one that differs from the others is desk-31, ann.',
        drop('good.json', 'bad.json'),
    ),
    scene(
        '-unreadable',
        { result: { ...done, problems: ['it is not a report'], lines: [] } },
        'bad.json cannot be read',
    ),
    scene(
        '-refused',
        { result: { ...done, end: 'failed', reason: 'It was ended by a signal.' } },
        'The reports could not be compared',
    ),
];
