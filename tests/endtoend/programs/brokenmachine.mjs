import fs from 'node:fs';
import path from 'node:path';

import { suiteDirectory } from '../paths.mjs';

const noFonts = '<fontconfig><dir>/home/user/fonts</dir></fontconfig>';

/** Changes the name of a needed library inside the suite's program. */
function programWithout(library) {
    const content = fs.readFileSync(path.join(suiteDirectory, 'office/vyr'), 'latin1');
    if (!content.includes(library)) throw new Error(`the program does not need ${library}`);
    return Buffer.from(content.replaceAll(library, library.replace(/\d$/, '9')), 'latin1');
}

/**
 * One fault each: the check that must find it, the damage, the environment, and the beginning of
 * the line that reports it.
 */
export const faults = [
    {
        name: 'a library that is missing',
        check: 'libraries',
        damage: (root) =>
            root.writeFile('/suite/office/vyr', programWithout('libfontconfig.so.1'), {
                mode: 0o755,
            }),
        line: '✘ The library libfontconfig.so.9 is missing; vyr needs it. Install',
    },
    {
        name: 'no fonts',
        check: 'fonts',
        damage: (root) => root.writeFile('/home/user/fonts.conf', noFonts),
        env: { FONTCONFIG_FILE: '/home/user/fonts.conf' },
        line: '✘ There are no fonts at all: no text can be shown. Install',
    },
    {
        name: 'a language that the system lacks',
        check: 'locale',
        env: { LC_CTYPE: 'xx_YY.GBK' },
        line: '✘ LC_CTYPE is “xx_YY.GBK”, a language setting that this system does not have',
    },
    {
        name: 'a full temporary directory',
        check: 'space',
        damage: (root) => root.smallDisk('/tmp', 1024 * 1024),
        line: '✘ The temporary directory (/tmp) is nearly full: 1.00 MiB are free.',
    },
    {
        name: 'settings that cannot be written',
        check: 'configuration',
        damage: (root) =>
            root.writeFile('/home/user/.config/Orvane/Office.conf', '[a]\nb=c\n', { mode: 0o444 }),
        line: '✘ The settings file /home/user/.config/Orvane/Office.conf cannot be written',
    },
    {
        name: 'settings that cannot be read',
        check: 'configuration',
        damage: (root) =>
            root.writeFile('/home/user/.config/Orvane/Office.conf', '[a]\nb=c\n', { mode: 0o200 }),
        line: '✘ The settings file /home/user/.config/Orvane/Office.conf cannot be read',
    },
    {
        name: 'no printing service',
        check: 'printing',
        line: '✘ The printing service (CUPS) at localhost:631 does not answer: ',
    },
    {
        name: 'no display',
        check: 'display',
        line: '✘ This session has no display: neither WAYLAND_DISPLAY nor DISPLAY is set.',
    },
    {
        name: 'a display that is not there',
        check: 'display',
        env: { DISPLAY: ':99' },
        line: '✘ No window can be opened on DISPLAY=:99: could not connect to display :99.',
    },
    {
        name: 'no bus',
        check: 'dbus',
        line: '✘ This session has no bus: DBUS_SESSION_BUS_ADDRESS is not set',
    },
    {
        name: 'a bus that is not there',
        check: 'dbus',
        env: { DBUS_SESSION_BUS_ADDRESS: 'unix:path=/nowhere' },
        line: '✘ The session bus at unix:path=/nowhere does not answer: ',
    },
    {
        name: 'an input-method module that is missing',
        check: 'input',
        env: { QT_IM_MODULE: 'scim' },
        line: '✘ There is no module for the input method “scim” in ',
    },
    {
        name: 'no plug-in directory',
        check: 'plugins',
        line: '✘ None of the directories where browsers look for plug-ins is there: ',
    },
    {
        name: 'no such check',
        check: 'nonsense, "quoted"\nand more',
        line: '✘ There is no check named “nonsense, "quoted"\\x0aand more”. The checks are: lib',
    },
];
