import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { beside, displayAndBus } from '../beside.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const recorder = '/suite/office/addons/vyrassistanttool/screencap/screencap';
const videos = '/home/user/Videos';
/** In a fresh home GStreamer first looks at all its plug-ins: slow on a busy machine. */
const patience = 150_000;
/**
 * A display of odd width, as virtual machines have, and a window manager. Openbox loses a window
 * that is shown while it starts, with either Qt: it stays unmapped.
 */
const display = [
    displayAndBus.replace('-noreset', '-noreset -screen 0 641x480x24'),
    "openbox --startup 'touch /tmp/managed' &",
    'await test -e /tmp/managed',
].join('\n');
const waits = 'await() { timeout 60 bash -c "until $*; do sleep 0.05; done"; }\n';
const size = `$(stat -c %s ${videos}/.recording-*.webm 2> /dev/null || echo 0)`;
const hasPictures = `await '[ "${size}" -gt 1000 ]'`;
/** A window that goes while xdotool looks at it ends the search: it is made again. */
const findsWindow = `await 'xdotool search --onlyvisible --name "Recording the screen" > /tmp/window 2> /dev/null'
id=$(head -n 1 /tmp/window)`;
/** Without the limit it waits without end for a window that goes. */
const escapes = 'timeout 5 xdotool windowactivate --sync $id key Escape';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

async function runScript(script, options = {}) {
    await root.writeFile('/tmp/script.sh', waits + script);
    const prepared = await beside(root, display);
    return prepared.run(['bash', '/tmp/script.sh'], { timeoutMs: patience, ...options });
}

describe('with the real GStreamer', () => {
    test('the command records at once, shows it, and a key saves a WebM that plays', async () => {
        const end = await runScript(`
/suite/office/assistantctl recordscreen
${hasPictures}
${findsWindow}
${recorder}
await "test -e ${videos}/recording-*.webm || { ${escapes} 2> /dev/null; false; }"
file ${videos}/*
gst-launch-1.0 -q filesrc location=$(echo ${videos}/recording-*.webm) ! matroskademux \\
    ! video/x-vp8,width=641,height=480 ! vp8dec ! videoconvert ! pngenc \\
    ! multifilesink location=/tmp/picture%d.png
ls /tmp/picture*.png | wc -l
stat -c %a ${videos}/recording-*`);
        expect(end.stderr).toBe('a recording is under way already\n');
        const [answer, kind, pictures, rights] = end.stdout.trim().split('\n');
        expect(answer).toContain('"success"');
        expect(kind).toMatch(/recording-\d{4}-\d\d-\d\d-\d{6}\.webm: WebM$/);
        expect(Number(pictures)).toBeGreaterThan(1);
        expect(rights).toBe('600');
        expect(await root.list(videos)).toHaveLength(1);
    });

    test('sound is recorded only when asked for', async () => {
        const end = await runScript(`
for switch in "" --sound; do
    ${recorder} $switch > /tmp/file & recorder=$!
    ${hasPictures}
    kill -TERM $recorder
    wait $recorder
    # Where there is no sound to link, it seldom hangs after it has said so.
    timeout 20 gst-launch-1.0 -q filesrc location=$(cat /tmp/file) ! matroskademux ! opusdec \\
        ! filesink location=/tmp/sound
    [ -s /tmp/sound ] && echo sound || echo none
    rm -f /tmp/sound
done
${recorder} --loud || echo $?`);
        expect(end.stdout).toBe('none\nsound\n2\n');
    });

    test('a click on Stop saves it too', async () => {
        const end = await runScript(`
${recorder} & recorder=$!
${hasPictures}
${findsWindow}
eval $(xdotool getwindowgeometry --shell $id)
xdotool mousemove --window $id $((WIDTH - 30)) $((HEIGHT / 2)) click 1
wait $recorder
echo status $?`);
        expect(end.stderr).toBe('');
        expect(end.stdout).toMatch(/^\/home\/user\/Videos\/recording-.+\.webm\nstatus 0\n$/);
    });
});

test('what cannot be recorded is said, and leaves nothing', async () => {
    expect(await root.run([recorder])).toMatchObject({
        status: 1,
        stderr: 'this session has no display\n',
    });
    const fake = '#!/bin/sh\necho "ERROR: no pictures" >&2\nexit 1\n';
    await root.writeFile('/fakes/gst-launch-1.0', fake, { mode: 0o755 });
    const end = await runScript(`
XDG_SESSION_TYPE=wayland QT_QPA_PLATFORM=xcb ${recorder} || echo $?
${recorder} || echo $?`);
    expect(end.stdout).toBe('1\n1\n');
    expect(end.stderr).toMatch(
        /^the desktop has no portal for recordings: .+\nERROR: no pictures\n$/,
    );
    expect(await root.list(videos)).toEqual([]);
});
