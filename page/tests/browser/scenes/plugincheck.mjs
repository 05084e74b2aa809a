const page = 'vyrNpEnvCheck.html';

/** Replaces the browser's plug-ins, and checks again. */
const withPlugIns = (list) => async (view) => {
    await view.evaluate((plugIns) => {
        Object.defineProperty(navigator, 'plugins', { value: plugIns, configurable: true });
    }, list);
    await view.locator('#again').click();
};
const suite = {
    name: 'Office plug-in',
    description: 'Shows documents',
    filename: 'libvyrplugin.so',
    length: 1,
    0: { type: 'application/x-vyr' },
};
const other = { name: 'Java', description: '', filename: 'libjava\u202E.so', length: 0 };

export const scenes = [
    { name: 'plugincheck', page, withoutHost: true, shows: 'What this page cannot check' },
    {
        name: 'plugincheck-suite',
        page,
        withoutHost: true,
        act: withPlugIns([other, suite]),
        shows: "This browser has the office suite's plug-in.",
    },
    {
        name: 'plugincheck-others',
        page,
        withoutHost: true,
        act: withPlugIns([other]),
        shows: 'libjava⟨U+202E⟩.so',
    },
    {
        name: 'plugincheck-none',
        page,
        withoutHost: true,
        act: withPlugIns([]),
        shows: 'This browser lists no plug-ins.',
    },
];
