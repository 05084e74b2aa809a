/** The title of a new text document's window. */
export const textDocument = 'Untitled 1 - LibreOffice Writer';
const newDocument = `^${textDocument}$`;
export const opens = ({ windows }) => textDocument in windows;
const display = ['xvfb-run', '-a', 'dbus-run-session', '--', 'bash', '-c'];
export const opensNot = (seen) => !opens(seen);

const windows = `
windows() {
    xdotool search --onlyvisible --name . 2>/dev/null | while read -r id; do
        echo "window $(xdotool getwindowname "$id" 2>/dev/null)	$(
            xdotool getwindowgeometry --shell "$id" 2>/dev/null | sed -n 's/^WIDTH=//p')"
    done
}
export -f windows
`;

/** Prints "window TITLE<tab>WIDTH" of each window, and how the program does. */
const script = `${windows}
until=$1 patience=$2 later=$3
shift 3
"$@" >/dev/null 2>&1 &
program=$!
timeout "$patience" bash -c "
    until windows | cut -f 1 | cut -d ' ' -f 2- | grep -qE '$until' || ! kill -0 $program 2>/dev/null
    do sleep 0.1; done"
timeout 8 bash -c "until $later; do sleep 0.1; done"
windows
kill -0 $program 2>/dev/null || echo ended
if pid=$(pgrep -x soffice.bin); then
    sed -n 's|.*/libvclplug_\\([a-z0-9_]*\\)lo\\.so$|plugin \\1|p' "/proc/$pid/maps" | sort -u
    kill -KILL "$pid"
fi`;

/**
 * A session on a display of its own that runs a script, in which "windows" lists the windows and
 * "await SECONDS COMMAND" waits until a command of the shell holds.
 */
export function sessionOf(commands) {
    const waits = 'await() { timeout "$1" bash -c "until $2; do sleep 0.1; done" >/dev/null; }';
    return [
        [...display, `${windows}\n${waits}\n${commands}`],
        { env: { XDG_CURRENT_DESKTOP: 'GNOME' } },
    ];
}

/**
 * A session that starts a program on a display of its own and waits until the title of a window
 * matches, the program has ended, or so many seconds are over; then until a command of the shell
 * holds.
 */
export function sessionWith(
    command,
    { until = newDocument, patience = 40, later = 'true', env = {} } = {},
) {
    return [
        [...display, script, 'session', until, `${patience}`, later, ...command],
        { env: { XDG_CURRENT_DESKTOP: 'GNOME', ...env } },
    ];
}

/** The widths of the windows by title, the window plug-ins, and whether the program has ended. */
export function seenIn(output) {
    const windows = [...output.matchAll(/^window (.*)\t(\d*)$/gm)];
    return {
        windows: Object.fromEntries(windows.map(([, title, width]) => [title, Number(width)])),
        plugins: [...output.matchAll(/^plugin (.*)$/gm)].map(([, name]) => name),
        ended: /^ended$/m.test(output),
    };
}
