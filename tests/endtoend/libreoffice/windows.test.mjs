import { afterAll, describe, expect, test } from 'vitest';

import { faults } from './faults.mjs';
import { OfficeRoot, removeUsedProfile, settings } from './officeroot.mjs';

/** A LibreOffice with windows, such as ./test libreoffice unpacks. */
const withWindows = process.env.LIBREOFFICE_WINDOWS ?? '';

afterAll(removeUsedProfile);

async function withOffice(use) {
    const office = await OfficeRoot.create();
    try {
        office.bind(withWindows, '/usr/lib/libreoffice');
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

    describe.each(faults.filter((fault) => fault.window))('$name', (fault) => {
        test('shows', async () => {
            await withOffice(async (office) => {
                await fault.plant(office);
                const seen = await shown(office, fault.window, { ...fault.session, ...fault.env });
                expect(fault.window.shows(seen, office), JSON.stringify(seen)).toBe(true);
            });
        });

        test('is gone after the repair', async () => {
            await withOffice(async (office) => {
                await fault.plant(office);
                expect(await office.fix(fault)).toMatchObject([{ result: 'repaired' }]);
                const after = { ...fault.window, ...fault.window.after };
                const seen = await shown(office, after, fault.session);
                expect(fault.window.works(seen, office), JSON.stringify(seen)).toBe(true);
            });
        });
    });
});
