import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { installEntries } from '../desktop/suiteentries.mjs';
import { samples } from '../plugin/config/desktoptools.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

/** A LibreOffice with a window plug-in, such as ./test libreoffice unpacks. */
const withWindows = process.env.LIBREOFFICE_WINDOWS ?? '';
const documents = '/home/user/Documents';
const patience = 1_200_000;

/** What LibreOffice shows of a sample: the document, a new one made from it, or a question. */
function shownFor(suffix) {
    if (/^\.(vy|tb|sh)/.test(suffix)) return 'question';
    return /^\.(dot|xlt|pot)/.test(suffix) ? 'template' : 'document';
}

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await installEntries(root);
    await root.makeDirectory('/home/user/.local/share/mime/packages');
    await root.makeDirectory(documents);
    await root.run(['cp', '-r', '/suite/office/asso_template/.', documents]);
    // As a desktop does: the types first, then their programs.
    for (let round = 0; round < 2; round++) {
        await runCommand(root, 'fileassorepair');
        await root.run(['update-mime-database', '/home/user/.local/share/mime']);
    }
});

afterEach(async () => root.dispose());

/**
 * Opens each document as a file manager does, in a session of its own, and prints its name once
 * LibreOffice shows it. What it shows is a word of shownFor(), or "lock" for the mark that it
 * leaves beside a document that it has open.
 */
const session = `
await() { timeout 60 bash -c "until $1; do sleep 0.1; done"; }
titles() {
    xdotool search --onlyvisible --name . 2>/dev/null |
        while read -r id; do xdotool getwindowname "$id" 2>/dev/null; done
}
export -f titles
# The next one starts as on a fresh desktop.
end() {
    # A helper that it has just forked still has its name.
    pkill -KILL -x soffice.bin && await '! pgrep -x soffice.bin'
    rm -rf "$HOME/.config/libreoffice"
}
for word; do
    shown=\${word%%:*} name=\${word#*:}
    gio open "${documents}/$name"
    case $shown in
        lock) await "[ -e '${documents}/.~lock.$name#' ]" ;;
        document) await "titles | grep -qF '$name'" ;;
        template) await "titles | grep -q '^Untitled 1 - LibreOffice'" ;;
        question) await "titles | grep -q '^LibreOffice [0-9.]*$'" ;;
    esac && echo "$name" || echo "$name: $(titles)"
    end
done`;

const nameOf = (suffix) => `vyr${suffix}`;

async function opened(words, display = []) {
    const end = await root.run(
        [...display, 'dbus-run-session', '--', 'bash', '-c', session, 'session', ...words],
        { timeoutMs: patience, env: { XDG_CURRENT_DESKTOP: 'GNOME' } },
    );
    // Programs of the session write to the output as well.
    return end.stdout.split('\n').filter((line) => line.startsWith('vyr'));
}

test('a double-click opens LibreOffice with the document', async () => {
    const names = ['.docx', '.xls', '.pptx'].map(nameOf);
    expect(await opened(names.map((name) => `lock:${name}`))).toEqual(names);
});

describe.runIf(withWindows)('with windows', () => {
    test(
        'each of the 39 samples is shown',
        async () => {
            root.bind(withWindows, '/usr/lib/libreoffice');
            const words = samples.map(({ suffix }) => `${shownFor(suffix)}:${nameOf(suffix)}`);
            const names = samples.map(({ suffix }) => nameOf(suffix));
            expect(names.length).toBe(39);
            expect(await opened(words, ['xvfb-run', '-a'])).toEqual(names);
        },
        patience,
    );
});
