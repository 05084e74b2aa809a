import fs from 'node:fs';

import { runCommand } from '../assistantctl.mjs';
import { beside, besideLog, displayAndBus } from '../beside.mjs';

/** Scripts that start a daemon and return when it serves. */
const knownDaemons = {
    ibus: `
ibus-daemon --panel disable --xim &
await compgen -G "$HOME/.config/ibus/bus/*-unix-\${WAYLAND_DISPLAY:-7}"
`,
    fcitx5: `
fcitx5 --disable wayland,waylandim &
await dbus-send --session --dest=org.freedesktop.DBus --print-reply /org/freedesktop/DBus \
    org.freedesktop.DBus.GetNameOwner string:org.fcitx.Fcitx5
`,
};

/** Variables named CHECKED_… are set without that prefix, for the check only. */
const checkedEnvironment = `
for checked in "\${!CHECKED_@}"; do
    export "\${checked#CHECKED_}=\${!checked}"
done
`;

const machineId = fs.readFileSync('/etc/machine-id', 'latin1').split('\n')[0];

/** Where ibus writes its bus address. */
export function busFile(root, ending) {
    return `${root.home}/.config/ibus/bus/${machineId}${ending}`;
}

/**
 * Runs the input check while these daemons run, on a private display and bus:
 * {result, debug}; debug is what the check wrote to standard error.
 */
export async function checkInput(root, daemons, env) {
    const script =
        displayAndBus + daemons.map((name) => knownDaemons[name]).join('') + checkedEnvironment;
    const end = await runCommand(await beside(root, script), 'inputcheck', {}, { env });
    if (end.status !== 0) throw new Error(`${end.stderr}\n${await besideLog(root)}`);
    return { result: end.answer.result, debug: end.stderr };
}
