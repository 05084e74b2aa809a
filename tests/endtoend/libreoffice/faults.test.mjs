import { afterAll, afterEach, beforeEach, describe, expect, test } from 'vitest';

import { faults } from './faults.mjs';
import { OfficeRoot, profile, removeUsedProfile } from './officeroot.mjs';

const all = process.env.LIBREOFFICE_FAULTS === 'all';
const chosen = faults.filter((fault) => all || fault.normal);

let office;

beforeEach(async () => {
    office = await OfficeRoot.create();
});

afterEach(async () => office.dispose());
afterAll(removeUsedProfile);

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
    } finally {
        await fresh.dispose();
    }
});

describe.each(chosen)('$name', (fault) => {
    const area = fault.area ?? '/home/user/.config/libreoffice';

    test('is seen, named, mended and brought back', async () => {
        await fault.plant(office);
        const planted = office.tree(area);
        expect(await office.findings()).toEqual([fault.check]);
        expect(await office.fix(fault.check, fault.repair)).toMatchObject([{ result: 'repaired' }]);
        expect(await office.findings()).toEqual([]);
        expect(await office.undo()).toBe('undone');
        expect(office.tree(area)).toEqual(planted);
        if (fault.shows) expect(fault.shows(await office.convert(fault))).toBe(true);
    });

    test('is gone for LibreOffice after the repair', async () => {
        await fault.plant(office);
        await office.fix(fault.check, fault.repair);
        // A new session no longer has what its file had set.
        expect(fault.works(await office.convert())).toBe(true);
    });
});
