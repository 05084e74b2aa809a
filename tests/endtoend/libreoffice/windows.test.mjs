import fs from 'node:fs';
import path from 'node:path';

import { afterAll, describe, expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
import { faults } from './faults.mjs';
import { FaultTable } from './faulttable.mjs';
import { missing } from './missing.mjs';
import { OfficeRoot, removeUsedProfile, settings } from './officeroot.mjs';

const runningChecks = path.join(suiteDirectory, 'office/checks/libreoffice-running.json');
/** A LibreOffice with windows, such as ./test libreoffice unpacks. */
const withWindows = process.env.LIBREOFFICE_WINDOWS ?? '';

const table = new FaultTable();

afterAll(() => {
    removeUsedProfile();
    if (withWindows) table.write('windows');
});

async function withOffice(use, isPlain = false) {
    const office = await OfficeRoot.create();
    try {
        if (!isPlain) office.bind(withWindows, '/usr/lib/libreoffice');
        return await use(office);
    } finally {
        await office.dispose();
    }
}

async function shown(office, { command = ['soffice', '--writer'], ...options }, env) {
    const seen = await office.window(command, { ...options, env });
    const content = (await office.exists(settings)) ? await office.readFile(settings) : '';
    return { ...seen, content };
}

describe.runIf(withWindows)('in the windows of LibreOffice', () => {
    test('a new document is shown where nothing is wrong', async () => {
        const seen = await withOffice((office) => shown(office, {}));
        expect(seen).toMatchObject({
            windows: { 'Untitled 1 - LibreOffice Writer': 800 },
            plugins: ['gtk3'],
            ended: false,
        });
    });

    test('one without windows keeps others from showing any until it is ended', async () => {
        await withOffice(async (office) => {
            // As shipped, but not only after half an hour.
            const { checks } = JSON.parse(fs.readFileSync(runningChecks, 'utf8'));
            const check = checks.find(({ id }) => id === 'libreoffice.hidden');
            check.look.all[1].age.over = '1s';
            await office.writeFile(
                '/home/user/.config/office-assistant/checks.d/hidden.json',
                JSON.stringify({ suite: 'libreoffice', checks: [check] }),
            );
            const stdout = await office.session(`
                soffice --headless --norestore --nologo >/dev/null 2>&1 &
                await 30 'pgrep -x soffice.bin'
                hidden=$(pgrep -x soffice.bin)
                await 10 "[ \\$(ps -o etimes= -p $hidden) -ge 2 ]"
                timeout 20 soffice --writer >/dev/null 2>&1 &
                await 10 'windows | grep -q Untitled' && echo shown || echo hidden
                /suite/office/assistantctl doctor --json |
                    grep -oP '"check":"libreoffice\\.\\K(?!fonts-)[a-z-]+(?=".*"type":"finding")'
                /suite/office/assistantctl doctor --fix --yes libreoffice.hidden >/dev/null
                echo "fixed: $?"
                await 10 "! kill -0 $hidden 2>/dev/null"
                soffice --writer >/dev/null 2>&1 &
                await 40 'windows | grep -q Untitled' && echo shown || echo hidden
                pkill -KILL -x soffice.bin`);
            // Services of the session write to the output as well.
            expect(stdout.match(/^(hidden|shown|fixed: \d+)$/gm)).toEqual([
                'hidden',
                'hidden',
                'fixed: 0',
                'shown',
            ]);
            table.note(
                { name: 'one without windows that runs', check: 'hidden' },
                {
                    'seen in LibreOffice': 'in its windows',
                    'named alone': 'yes',
                    mended: 'yes',
                    undone: 'cannot be',
                },
            );
        });
    });

    describe.each(faults.filter((fault) => fault.window))('$name', (fault) => {
        const timed = (run) => table.timed(fault, () => withOffice(run));

        test('shows', async () => {
            await timed(async (office) => {
                await fault.plant(office);
                const seen = await shown(office, fault.window, { ...fault.session, ...fault.env });
                expect(fault.window.shows(seen, office), JSON.stringify(seen)).toBe(true);
                table.note(fault, { 'seen in LibreOffice': 'in its windows' });
            });
        });

        test('is gone after the repair', async () => {
            await timed(async (office) => {
                await fault.plant(office);
                expect(await office.fix(fault)).toMatchObject([{ result: 'repaired' }]);
                const after = { ...fault.window, ...fault.window.after };
                const seen = await shown(office, after, fault.session);
                expect(fault.window.works(seen, office), JSON.stringify(seen)).toBe(true);
                table.note(fault, { mended: 'yes' });
            });
        });
    });

    test.each(missing.filter(({ window }) => window))('$name shows', async (row) => {
        const { name, env, plant, findings, window } = row;
        await withOffice(async (office) => {
            await plant(office);
            const seen = await shown(office, window, env);
            expect(window.shows(seen), JSON.stringify(seen)).toBe(true);
            table.note(
                { name, check: Object.keys(findings).join(', ') },
                { 'seen in LibreOffice': 'in its windows' },
            );
        }, window.isPlain);
    });
});
