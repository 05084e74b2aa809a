/** The doctor's explanations, with what repairs them. */
import { change } from './watching.mjs';

const home = '/home/user';
const list = `${home}/.config/mimeapps.list`;
const cache = '/usr/share/applications/mimeinfo.cache';
const choice = (entry, path, line) => ({ entry, mime: 'application/x-doc', where: { path, line } });

const repair = (plan, changes) => ({ plan, changes, refusal: '' });

/** A kind of documents that opens with another entry than the list names. */
export const openReason = {
    result: {
        type: 'why',
        question: 'open',
        text: `${list}, line 3 names lost.desktop, but it is not installed.`,
        verdict: 'not-as-said',
        mime: 'application/x-doc',
        found: {
            how: 'name',
            names: [{ pattern: '*.doc', where: { path: '/usr/share/mime/globs2', line: 12 } }],
        },
        statements: [
            {
                mime: 'application/x-doc',
                where: { path: list, line: 3 },
                entry: 'lost.desktop',
                fate: 'fails',
                text: 'it is not installed',
            },
            {
                mime: 'application/x-base',
                where: { path: cache, line: 7 },
                entry: 'other\u202E.desktop',
                fate: 'decides',
                text: 'decides',
            },
        ],
        gio: choice('other.desktop', cache, 7),
        xdgMime: null,
        kde: choice('other.desktop', cache, 7),
        repair: repair(5, [
            change(
                'write',
                list,
                `--- ${list}\n+++ ${list}\n@@ -3 +3 @@\n-x=lost.desktop\n+x=right.desktop\n`,
            ),
        ]),
    },
};

export const openings = {
    result: {
        suffixes: [
            { suffix: 'doc', gio: choice('other.desktop', cache, 7) },
            { suffix: 'xls', gio: null },
        ],
    },
};

const part = (path, mode, more = {}) => ({
    path,
    kind: 'directory',
    mode,
    owner: 'user',
    group: 'users',
    ...more,
});

const access = (more) => ({
    result: { type: 'why', question: 'denied', access: 'read', component: '', remedy: '', ...more },
});

export const grantedReason = access({
    access: 'write',
    verdict: 'granted',
    text: `${home}/.config: you may write to it`,
    chain: [part('/', '0755'), part(`${home}/.config`, '0750', { accessList: true })],
});

/** A folder that its owner has closed. */
export const deniedReason = access({
    verdict: 'denied',
    text: `You own ${home}/.config/Orvane, but its mode 0600 does not let you pass through it.`,
    component: `${home}/.config/Orvane`,
    remedy: `chmod u+x ${home}/.config/Orvane`,
    needs: 'user',
    chain: [
        part('/', '0755', { owner: 'root' }),
        part(`${home}/link`, '0777', { kind: 'link', target: '.config' }),
        part(`${home}/.config/Orvane`, '0600'),
    ],
    repair: repair(6, [{ ...change('rights', `${home}/.config/Orvane`), mode: '0700' }]),
});

/** What only the administrator can open. */
export const foreignReason = access({
    verdict: 'denied',
    text: `${home}/.config/Orvane belongs to root.`,
    component: `${home}/.config/Orvane`,
    remedy: `setfacl -m u:user:rw ${home}/.config/Orvane`,
    needs: 'administrator',
    chain: [part(`${home}/.config/Orvane`, '0600', { owner: 'root' })],
    repair: repair(6, [
        {
            ...change('command', `${home}/.config/Orvane`),
            command: `setfacl -m u:user:rw ${home}/.config/Orvane`,
        },
    ]),
});

const profile = `${home}/.profile`;
const variable = (name, value, origin, places = []) => ({ name, value, origin, places });

export const inputReason = {
    result: {
        type: 'why',
        question: 'input',
        verdict: 'cause',
        text: 'XMODIFIERS names fcitx, but ibus is running.',
        variables: [
            variable('XMODIFIERS', '@im=fcitx', 'line', [{ path: profile, line: 2 }]),
            variable('QT_IM_MODULE', null, 'unset'),
            variable('GTK_IM_MODULE', 'ibus', 'manager'),
            variable('LANG', 'zh_CN.UTF-8', 'undecided', [{ path: '/etc/default/locale' }]),
        ],
        repair: repair(7, [
            change(
                'write',
                profile,
                '@@ -2 +2 @@\n-export XMODIFIERS=@im=fcitx\n+export XMODIFIERS=@im=ibus\n',
            ),
        ]),
    },
};

/** Of a session whose language needs no input method. */
export const unneededInput = {
    result: {
        type: 'why',
        question: 'input',
        verdict: 'well',
        text: 'Nothing is wrong: no input method is set up, and the language needs none.',
        variables: [variable('XMODIFIERS', null, 'unset')],
    },
};

/** A repair that is made, and its undo. */
export const repairing = {
    'doctor.fix': { result: { type: 'repair', result: 'repaired', journal: 9, reason: '' } },
    'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
};

/** Makes the repair that is offered. */
export async function fix(view) {
    await view.locator('.repair-offer .ask-once-start').click();
    await view.locator('.repair-offer .ask-once-confirm').click();
}
