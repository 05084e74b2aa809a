import { change, preview, watching } from '../watching.mjs';

const page = 'shortcuts.html';

function desktop(files, mode = 'helio_independ') {
    return {
        result: {
            icon: files.join('|'),
            mode,
            chartboard: false,
            docket: false,
            fixedcomponent: true,
        },
    };
}

const separate = ['vyr', 'shw', 'tbl', 'pdf'].map((name) => `vyr-office-${name}.desktop`);
const strange = 'vyr-office-\u202Eeti\u2066.desktop';

async function putBack(view) {
    await view.locator('.ask-once-start').click();
    await view.locator('.ask-once-confirm').click();
}

const writer = '/home/user/Desktop/vyr-office-vyr.desktop';
const entry = `--- ${writer}
+++ ${writer}
@@ -1,3 +1,3 @@
 [Desktop Entry]
-Exec=other %f
+Exec=vyr %f
 Name=Writer
`;
const replaced = [
    change('write', writer, entry),
    change('create', '/home/user/Desktop/vyr-office-tbl.desktop'),
    change('remove', '/home/user/Desktop/vyr-office-tessaly.desktop'),
];
const watched = {
    getdesktopiconfile: [desktop([]), desktop(separate)],
    fixfouricon: { result: 'success' },
    'doctor.preview': preview(replaced),
    ...watching(replaced),
};

const icon =
    "data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8'%3E%3Crect width='8' height='8' rx='2' fill='%232f6fde'/%3E%3C/svg%3E";
const pictured = desktop(separate);
pictured.result.looks = Object.fromEntries(
    separate.map((file) => [file, { title: 'As on the desktop\u202E', icon }]),
);

export const scenes = [
    {
        name: 'shortcuts-pictured',
        page,
        answers: { getdesktopiconfile: pictured },
        shows: 'As on the desktop',
    },
    {
        name: 'shortcuts',
        page,
        answers: { getdesktopiconfile: desktop([...separate, strange]) },
        shows: '⟨U+202E⟩',
    },
    {
        name: 'shortcuts-empty',
        page,
        answers: { getdesktopiconfile: desktop([]) },
        shows: 'There are no shortcuts of the suite on the desktop',
    },
    {
        name: 'shortcuts-integrated',
        page,
        answers: { getdesktopiconfile: desktop(separate, 'helio_fushion') },
        shows: 'Integrated: one program',
    },
    {
        name: 'shortcuts-deep',
        page,
        answers: { getdesktopiconfile: desktop(['Schreibtisch', 'Schreibtisch'], 'odd_mode') },
        shows: '2 are in this folder',
    },
    {
        name: 'shortcuts-asking',
        page,
        answers: { getdesktopiconfile: desktop(separate) },
        act: (view) => view.locator('.ask-once-start').click(),
        shows: 'will be replaced. Continue?',
    },
    {
        name: 'shortcuts-repaired',
        page,
        answers: {
            getdesktopiconfile: [
                desktop([]),
                desktop([]),
                desktop(separate.slice(0, 1)),
                desktop(separate),
            ],
            fixfouricon: { result: 'success' },
        },
        act: putBack,
        shows: 'Restored and checked again',
    },
    {
        name: 'shortcuts-not-repaired',
        page,
        answers: {
            getdesktopiconfile: desktop(separate, 'helio_fushion'),
            fixoneicon: { result: 'success' },
        },
        act: putBack,
        shows: 'vyr-office-tessaly.desktop is still missing',
    },
    {
        name: 'shortcuts-previewed',
        page,
        watched: true,
        answers: watched,
        act: (view) => view.locator('.ask-once-start').click(),
        shows: 'This will be changed:',
    },
    {
        name: 'shortcuts-watched',
        page,
        watched: true,
        answers: watched,
        act: putBack,
        shows: 'What was changed',
    },
    {
        name: 'shortcuts-still-wrong',
        page,
        watched: true,
        answers: {
            ...watched,
            ...watching(replaced, { result: 'failed', reason: `${writer} is missing.` }),
        },
        act: putBack,
        shows: `${writer} is missing.`,
    },
    {
        name: 'shortcuts-undone',
        page,
        watched: true,
        answers: { ...watched, getdesktopiconfile: [desktop([]), desktop(separate)] },
        act: async (view) => {
            await putBack(view);
            await view.locator('.repair-made button').click();
        },
        shows: 'Undone: Restore shortcuts',
    },
    {
        name: 'shortcuts-waiting',
        page,
        watched: true,
        answers: {
            ...watched,
            'doctor.watch': { result: { journal: 0, refusal: 'Another repair is under way.' } },
        },
        act: putBack,
        shows: 'Nothing was changed: Another repair is under way.',
    },
    {
        name: 'shortcuts-failed',
        page,
        answers: { getdesktopiconfile: { refused: 'the desktop is locked' } },
        shows: 'The desktop could not be read',
    },
    {
        name: 'shortcuts-unanswered',
        page,
        answers: { getdesktopiconfile: {} },
        shows: 'The assistant did not answer',
    },
    {
        name: 'shortcuts-late',
        page,
        answers: { getdesktopiconfile: { late: true, ...desktop(separate) } },
        shows: 'Reading the desktop',
        later: 'Text documents',
    },
    {
        name: 'shortcuts-never',
        page,
        answers: { getdesktopiconfile: { never: true } },
        shows: 'Reading the desktop',
    },
];
