import { afterEach, expect, test } from 'vitest';

import {
    installRealDesktop,
    samples,
    templates,
    writeSamples,
} from '../plugin/config/desktoptools.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { configFile } from '../update/updater.mjs';
import { eachKill } from './kills.mjs';

const installed = '/opt/orvane/suite';
const desktop = '/home/user/Desktop';
const integrated = 'vyr-office-tessaly.desktop';
const separate = ['board', 'chart', 'docket', 'fixed', 'pdf', 'shw', 'tbl', 'vyr'].map(
    (name) => `vyr-office-${name}.desktop`,
);

const mine = 'text/html=mine.desktop;\n';

let root;

afterEach(async () => root.dispose());

async function installShortcuts() {
    await root.makeDirectory(desktop);
    for (const name of [...separate, integrated]) {
        await root.writeFile(`${installed}/desktops/${name}`, `${name}\n`.repeat(1000));
    }
}

const recover = (mode) => `bash /scripts/recovericon.sh ${mode} ${installed}`;

/** Bash: prints the names of shortcuts that are not whole. */
const damagedOf = (names) =>
    `for name in ${names.join(' ')}; do
         cmp -s "${installed}/desktops/$name" "${desktop}/$name" || echo "$name"
     done`;

test('restored shortcuts survive a kill, whose traces the next run clears', async () => {
    root = await SandboxRoot.create();
    await installShortcuts();
    const { damaged, last } = await eachKill(root, {
        first: `measure ${recover('other')}`,
        lines: `kill_at $kill ${recover('other')}; ${damagedOf(separate)}`,
        last: `${recover('other')}; ls -A ${desktop}`,
    });
    expect(damaged).toEqual([]);
    expect(last.split('\n').slice(0, -1)).toEqual(separate);
});

test('a kill between two modes leaves one mode’s shortcuts whole', async () => {
    root = await SandboxRoot.create();
    await installShortcuts();
    const { damaged, last } = await eachKill(root, {
        first: `measure ${recover('fusion')}`,
        lines: `
            ${recover('other')}
            kill_at $kill ${recover('fusion')}
            old=$(${damagedOf(separate)})
            new=$(${damagedOf([integrated])})
            [ -z "$old" ] || [ -z "$new" ] || echo "$old $new"`,
        last: `${recover('fusion')}; ls -A ${desktop}`,
    });
    expect(damaged).toEqual([]);
    expect(last).toBe(`${integrated}\n`);
});

test('associations survive a kill, whose traces the next run clears', async () => {
    root = await SandboxRoot.create();
    await writeSamples(root, (suffix) => `a sample of ${suffix}\n`);
    await installRealDesktop(root);
    await root.writeFile('/home/user/.config/mimeapps.list', `[Added Associations]\n${mine}`);
    await root.writeFile('/home/user/.config/mimeapps.list.BACKUP', '');
    const repair = `bash /scripts/repairasso.sh ${templates}`;
    const list = '/home/user/.config/mimeapps.list';
    const { damaged, last } = await eachKill(root, {
        first: `measure ${repair}`,
        // The last letters written are those of the last line.
        lines: `kill_at $kill ${repair}
                grep -qx '${mine.trim()}' ${list} && [ -z "$(tail -c 1 ${list})" ] || cat ${list}`,
        last: `${repair} > /dev/null; ls -A /home/user/.config; grep -c =vyr-office- ${list}`,
    });
    expect(damaged).toEqual([]);
    expect(last).toBe(`mimeapps.list\nmimeapps.list.BACKUP\n${samples.length}\n`);
});

test.each([
    ['can be written', '755', '/opt/orvane/vtool', 'vyrupdate.cfg\n'],
    ['cannot be written', '555', '/home/user/.local/share/Orvane/tmp', ''],
])(
    'a configuration whose directory %s survives a kill, whose traces the next run clears',
    async (_, mode, workplace, left) => {
        root = await SandboxRoot.create({ suite: true });
        await root.makeDirectory('/home/user/.local/share/Orvane/tmp');
        await root.writeFile(configFile, `[update]\nother=${'o'.repeat(5000)}\n[last]\nkept=yes\n`);
        const changes = ['', 'x'.repeat(9000)].map((value) =>
            JSON.stringify({ command: 'changeupdateconfig', args: { keyvalue: `value$${value}` } }),
        );
        await root.writeFile('/home/user/changes', `${changes.join('\n')}\n`.repeat(5000));
        const { damaged, last } = await eachKill(root, {
            first: `
                PATH=$PATH:/suite/office
                chmod ${mode} /opt/orvane/vtool
                for number in 1 2; do
                    sed -n "$number p" ~/changes | assistantctl --session > /dev/null
                    cp ${configFile} ~/whole$number
                done
                # Empty lines may be left at the end until the next run.
                check() {
                    for number in 1 2; do
                        cmp -s <("$@" ${configFile}) <("$@" ~/whole$number) && return
                    done
                    echo "$@" $(stat -c %s ${configFile})
                }
                length=500000`,
            lines: `
                kill_at $((kill + 1)) bash -c 'assistantctl --session < ~/changes'
                check grep .
                assistantctl getupdateconfig > /dev/null
                check cat`,
            last: `
                assistantctl changeupdateconfig 'keyvalue=value$last' > /dev/null
                ls -A ${workplace}; grep ^value= ${configFile}; chmod 755 /opt/orvane/vtool`,
        });
        expect(damaged).toEqual([]);
        expect(last).toBe(`${left}value=last\n`);
    },
);
