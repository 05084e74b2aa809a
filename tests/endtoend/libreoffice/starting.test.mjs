import { afterAll, afterEach, beforeEach, describe, expect, test } from 'vitest';

import { recent } from './items.mjs';
import { OfficeRoot, profile, removeUsedProfile } from './officeroot.mjs';

const program = '/suite/office/assistantctl';

test('the installation that is looked after is chosen, and no other folder', async () => {
    const office = await OfficeRoot.empty();
    try {
        const { stdout, stderr } = await office.shell(`
            ${program} suite choose /nonexistent || ${program} suite choose /usr/lib/libreoffice
            cat ~/.config/office-assistant/suites/*
            ${program} suite choose; ${program} suite --measure`);
        expect(stdout.trim()).toBe('/usr/lib/libreoffice');
        expect(stderr.split('\n')).toEqual([
            'There is no suite in /nonexistent',
            'assistantctl suite: expected: reset, restore, start, choose FOLDER or nothing',
            'assistantctl suite: --measure belongs to start',
            '',
        ]);
    } finally {
        await office.dispose();
    }
});

describe.runIf(process.env.LIBREOFFICE_FAULTS === 'all')('with the real LibreOffice', () => {
    let office;

    beforeEach(async () => {
        office = await OfficeRoot.create();
    });

    afterEach(async () => office.dispose());
    afterAll(removeUsedProfile);

    test('what the profile costs is measured, and the profile only read', async () => {
        const addresses = Array.from(
            { length: 40_000 },
            (_, number) => `file:///home/user/Documents/letter%20${number}.odt`,
        );
        await office.addItem(addresses.map(recent).join(''));
        const before = office.tree(profile);
        const { stdout, stderr } = await office.shell(
            `${program} suite start --measure --json; ls /tmp | grep start-time`,
        );
        expect(stderr).toBe('');
        const { clean, own, parts } = JSON.parse(stdout);
        expect(own).toBeGreaterThan(clean);
        // The settings have the recent documents.
        expect(['recent', 'settings']).toContain(parts[0].part);
        expect(office.tree(profile)).toEqual(before);
    });

    test('a clean profile is used, and gone at the end', async () => {
        const before = office.tree(profile);
        const { stdout } = await office.shell(`
            await() { timeout 60 bash -c "until $1; do sleep 0.05; done"; }
            ${program} suite start; echo "started: $?"
            await 'ls /tmp/clean-profile-*/user/registrymodifications.xcu >/dev/null 2>&1'
            # One that is still starting may not heed the first.
            await '! pkill -x soffice.bin'
            await '! ls -d /tmp/clean-profile-* >/dev/null 2>&1' && echo gone`);
        expect(stdout).toBe('started: 0\ngone\n');
        expect(office.tree(profile)).toEqual(before);
    });
});
