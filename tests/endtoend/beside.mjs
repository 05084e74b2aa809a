const launcher = '/tmp/beside.sh';
const logFile = '/tmp/beside.log';

/** Shell lines that start an X display and a session bus, and wait until both answer. */
export const displayAndBus = `
export DISPLAY=:7 DBUS_SESSION_BUS_ADDRESS=unix:path=/tmp/bus
Xvfb :7 -nolisten tcp -noreset &
await xprop -root
dbus-daemon --session --address=unix:path=/tmp/bus --nofork --nopidfile &
await dbus-send --session --dest=org.freedesktop.DBus --print-reply / \
    org.freedesktop.DBus.GetId
`;

/**
 * The root, with other programs running during every command. A bash script starts them and
 * returns when they are ready. They share the command's process namespace and end with it;
 * their output goes to a log. The result can be given to runCommand and Session.start.
 */
export async function beside(root, script) {
    await root.writeFile(
        launcher,
        `#!/bin/bash
# Waits until the condition (a command) holds, for a minute at most.
await() {
    local end=$((SECONDS + 60))
    until "$@" 2> /dev/null; do
        if ((SECONDS >= end)); then
            echo "no success: $*" >&2
            exit 99
        fi
        sleep 0.05
    done
}
exec 3>&1 4>&2 >> ${logFile} 2>&1 5<&0 < /dev/null
${script}
exec >&3 2>&4 <&5 3>&- 4>&- 5<&-
"$@"
`,
    );
    const launched = (command) => ['bash', launcher, ...command];
    return {
        run: (command, options) => root.run(launched(command), options),
        spawn: (command, options) => root.spawn(launched(command), options),
    };
}

/** What those programs have printed so far. */
export function besideLog(root) {
    return root.readFile(logFile);
}
