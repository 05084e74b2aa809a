import fs from 'node:fs';

import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { OfficeRoot, profile, settings } from './officeroot.mjs';

const mostKibibytes = 100 * 1024;
const profileRoot = '/home/user/.config/libreoffice/4';
const whole = `<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry"></oor:items>
`;
const entities = `<?xml version="1.0"?>
<!DOCTYPE x [<!ENTITY a "aaaaaaaaaa">${'bcdefghij'
    .split('')
    .map((name, at) => `<!ENTITY ${name} "${`&${'abcdefghi'[at]};`.repeat(10)}">`)
    .join('')}]>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">&j;</oor:items>
`;

let office;

beforeEach(async () => {
    office = await OfficeRoot.empty();
    await office.writeFile(settings, whole);
});

afterEach(async () => office.dispose());

/** A file of that size, of which no disk has to hold anything. */
async function huge(inside, bytes) {
    await office.writeFile(inside, '');
    fs.truncateSync(office.hostPath(inside), bytes);
}

const cases = [
    {
        name: 'settings of 200 MB',
        plant: () => huge(settings, 200_000_000),
        findings: ['settings-large'],
    },
    {
        name: 'a profile of 2 GB',
        plant: async () => {
            for (let at = 0; at < 10; at++) await huge(`${profile}/backup/${at}.odt`, 200_000_000);
            await huge(`${profile}/extensions/bundled/registry/x/backenddb.xml`, 200_000_000);
        },
        findings: ['extensions-large'],
    },
    {
        name: 'settings with entities that grow',
        plant: () => office.writeFile(settings, entities),
        findings: ['settings-damaged'],
    },
    {
        name: 'settings that are a link to themselves',
        plant: async () => {
            fs.rmSync(office.hostPath(settings));
            fs.symlinkSync('registrymodifications.xcu', office.hostPath(settings));
        },
        findings: ['settings-link'],
    },
    {
        name: 'a profile that is a link to itself',
        plant: async () => {
            fs.rmSync(office.hostPath(profileRoot), { recursive: true });
            fs.symlinkSync('4', office.hostPath(profileRoot));
        },
        findings: ['settings-link'],
    },
    {
        name: 'folders that contain themselves',
        plant: async () => {
            await office.makeDirectory(`${profile}/extensions`);
            fs.symlinkSync('..', office.hostPath(`${profile}/extensions/up`));
        },
        findings: [],
    },
];

describe.each(cases)('$name', ({ plant, findings }) => {
    test('is looked at in bounded time and memory', async () => {
        await plant();
        expect(await office.findings()).toEqual(findings);
        const { stdout, stderr } = await office.shell(
            "/usr/bin/time -f '%M' timeout 20 /suite/office/assistantctl doctor --json | tail -n 1",
        );
        expect(Number(stderr.trim().split('\n').at(-1))).toBeLessThan(mostKibibytes);
        expect(JSON.parse(stdout)).toMatchObject({ type: 'summary', failed: 0 });
    });
});

test('of two doctors at once one fixes, and nothing is lost', async () => {
    await office.writeFile(settings, whole.replace('</oor:items>', '<item oor:path="/x">'));
    const fix = '/suite/office/assistantctl doctor --fix --yes --json libreoffice.settings-damaged';
    const { stdout } = await office.shell(`${fix} & ${fix}; wait`);
    expect(stdout).toContain('"result":"repaired"');
    expect(await office.findings()).toEqual([]);
    expect(await office.undo()).toBe('undone');
    expect(await office.readFile(settings)).toContain('<item oor:path="/x">');
});
