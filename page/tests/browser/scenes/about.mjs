import { described } from './libreoffice.mjs';

const page = 'about.html';

export const scenes = [
    { name: 'about', page, shows: 'vue-i18n' },
    {
        name: 'about-suite',
        page,
        suited: true,
        answers: { 'suite.describe': { result: described } },
        shows: 'Looks after LibreOffice 7.4 in /usr/lib/libreoffice.',
    },
];
