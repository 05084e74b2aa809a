const answers = { exportsysinfo: { result: 'success' } };
const page = 'index.html';

export const scenes = [
    { name: 'home', page, answers, shows: 'How can we help?' },
    {
        name: 'home-settings',
        page,
        answers,
        act: (view) => view.click('[aria-haspopup="dialog"]'),
        shows: 'Text size',
    },
    {
        name: 'home-veil',
        page,
        answers,
        act: (view) => view.evaluate(() => window.hiddentipCallBack({ result: 'show' })),
        shows: 'A tool is open in its own window',
    },
    {
        name: 'home-exported',
        page,
        answers,
        act: (view) => view.click('.report-actions .primary'),
        shows: 'The report was saved and opened.',
    },
    { name: 'home-without-host', page, withoutHost: true, shows: 'ordinary browser' },
];
