import fs from 'node:fs';

import { afterAll, afterEach, beforeEach, describe, expect, test } from 'vitest';

import { faults } from './faults.mjs';
import { FaultTable } from './faulttable.mjs';
import { missing } from './missing.mjs';
import { OfficeRoot, profile, removeUsedProfile, settings } from './officeroot.mjs';

const column = 'seen in LibreOffice';
const saved = { [column]: 'in what it saves or says' };
const refused = { [column]: 'it refuses' };
/**
 * What users notice, where no test sees it in LibreOffice.
 *
 * @param {{ check?: string, seen?: string }} fault
 */
const notShown = ({ seen = 'read from files' }) => ({ [column]: `not by a test (${seen})` });
const all = process.env.LIBREOFFICE_FAULTS === 'all';
const chosen = faults.filter((fault) => all || fault.normal);

const table = new FaultTable();
let office;

beforeEach(async () => {
    office = await OfficeRoot.create();
});

afterEach(async () => office.dispose());
afterAll(() => {
    removeUsedProfile();
    if (all) table.write('saved');
});

test('a LibreOffice that was used is found and has nothing wrong', async () => {
    expect(await office.suites()).toMatchObject([
        {
            suite: 'libreoffice',
            source: 'package',
            folder: '/usr/lib/libreoffice',
            profile,
            chosen: true,
        },
    ]);
    expect(await office.findings()).toEqual([]);
    expect(await office.convert()).toMatchObject({ version: '1.2' });
});

test('so has one that was never started', async () => {
    const fresh = await OfficeRoot.empty();
    try {
        expect(await fresh.findings()).toEqual([]);
        expect(await fresh.exists(profile)).toBe(false);
        // This suite's shortcuts are not missed where nobody has put any.
        const { stdout } = await fresh.shell(
            '/suite/office/assistantctl doctor --json shortcuts.missing',
        );
        expect(stdout).toContain('"result":"skipped"');
    } finally {
        await fresh.dispose();
    }
});

describe.each(chosen)('$name', (fault) => {
    const area = fault.area ?? '/home/user/.config/libreoffice';

    test('is seen, named, mended and brought back', () =>
        table.timed(fault, async () => {
            await fault.plant(office);
            const planted = office.tree(area);
            expect(await office.findings(fault.session)).toEqual([fault.check]);
            table.note(fault, { 'named alone': 'yes' });
            if (fault.byHand) {
                expect(await fault.shows(null, office)).toBe(true);
                table.note(fault, { ...refused, mended: 'by hand' });
                return;
            }
            expect(await office.fix(fault)).toMatchObject([{ result: 'repaired' }]);
            expect(await office.findings(fault.session)).toEqual([]);
            table.note(fault, { mended: 'yes' });
            expect(await office.undo()).toBe('undone');
            expect(office.tree(area)).toEqual(planted);
            table.note(fault, { undone: 'yes' });
            if (fault.shows) {
                const converted = await office.convert({ env: fault.session, ...fault });
                expect(await fault.shows(converted, office)).toBe(true);
                table.note(fault, saved);
            } else if (!fault.window && !fault.isSeenElsewhere) {
                table.note(fault, notShown(fault));
            }
        }));

    test.runIf(fault.works && (all || fault.shows))(
        'is gone for LibreOffice after the repair',
        () =>
            table.timed(fault, async () => {
                await fault.plant(office);
                await office.fix(fault);
                // A new session no longer has what its file had set.
                const converted = await office.convert({ env: fault.session });
                expect(await fault.works(converted, office)).toBe(true);
                if (!fault.byHand) table.note(fault, { mended: 'yes' });
            }),
    );
});

test.runIf(all).each(missing)(
    '$name is named with the command',
    async ({ name, env, plant, findings, shows, patience, window }) => {
        const fault = { name, check: Object.keys(findings).join(', ') };
        await table.timed(fault, async () => {
            await plant(office);
            expect([...new Set(await office.findings(env))].sort()).toEqual(
                Object.keys(findings).sort(),
            );
            for (const [check, command] of Object.entries(findings)) {
                const changes = await office.plan(check, env);
                expect([...new Set(changes.map((change) => change.command))]).toEqual(
                    command === null ? [] : [command],
                );
            }
            table.note(fault, { 'named alone': 'yes', mended: 'the command is shown' });
            if (shows) {
                expect(await shows(await office.convert({ env, patience }), office)).toBe(true);
            }
            if (shows || !window) table.note(fault, shows ? saved : notShown({}));
        });
    },
);

test.runIf(all)(
    'a LibreOffice that hangs keeps others from starting until it is ended',
    async () => {
        const convert =
            'timeout -k 1 8 soffice --headless --convert-to fodt --outdir out plan.txt >/dev/null 2>&1';
        const { stdout } = await office.shell(`
        soffice --headless --norestore plan.txt >/dev/null 2>&1 &
        for _ in $(seq 100); do
            pid=$(pgrep -x soffice.bin) && [ -e .~lock.plan.txt# ] && break
            sleep 0.1
        done
        kill -STOP "$pid"
        timeout 30 bash -c "until [ \\$(ps -o etimes= -p $pid) -ge 6 ]; do sleep 0.1; done"
        ${convert}; echo "stopped: $?"
        /suite/office/assistantctl doctor --json |
            grep -oP '"check":"libreoffice\\.\\K(?!fonts-)[a-z-]+(?=.*"type":"finding")' |
            sed 's/^/named: /'
        /suite/office/assistantctl doctor --fix --yes libreoffice.hung >/dev/null; echo "fixed: $?"
        kill -0 "$pid" 2>/dev/null; echo "there: $?"
        timeout -k 1 40 ${convert.replace(/^timeout -k 1 8 /, '')}; echo "ended: $?"
        ls out`);
        expect(stdout).toMatch(/^stopped: 1\d\d$/m);
        expect(stdout.match(/^named: .*$/gm)).toEqual(['named: hung']);
        expect(stdout).toMatch(/^fixed: 0\nthere: 1\nended: 0\nplan\.fodt$/m);
        table.note(
            { name: 'one that hangs', check: 'hung' },
            { ...saved, 'named alone': 'yes', mended: 'yes', undone: 'cannot be' },
        );
    },
);

test.runIf(all)('folders of the home on a share that is away hold up nothing', async () => {
    await office.addHangingShare('/home/user/team');
    fs.symlinkSync('team', office.hostPath('/home/user/Documents'));
    expect(await office.findings()).toEqual([]);
});

test('settings are not touched while LibreOffice runs', async () => {
    await faults[0].plant(office);
    const planted = await office.readFile(settings);
    const { stdout } = await office.shell(`
        cp /bin/sleep soffice.bin
        ./soffice.bin 20 &
        sleep 0.3
        /suite/office/assistantctl doctor --fix --yes libreoffice.settings-damaged
        kill %1`);
    expect(stdout).toMatch(/soffice\.bin \(process \d+\) is running/);
    expect(await office.readFile(settings)).toBe(planted);
});
