import { afterEach, beforeEach, expect, test } from 'vitest';

import { parseEvents } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const installed = '/opt/orvane/my office';
const program = `${installed}/office/assistantctl`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ user: 'my user', suite: true });
    await root.run(['cp', '-r', '/suite', installed]);
    await root.recordingFake('gio', {
        output: 'standard::content-type: application/vyr-office-vyr\n',
    });
});

afterEach(async () => root.dispose());

/** The result of a command of the suite whose home and path have a blank. */
async function resultOf(command, choices = []) {
    const options = choices.flatMap((choice) => ['--choose', choice]);
    const end = await root.run([program, ...options, command]);
    return parseEvents(end.stdout).find(({ type }) => type === 'answer').result;
}

test('types and applications of every suffix are listed', async () => {
    for (const command of ['getassomime', 'getassoopen']) {
        const counts = (await resultOf(command)).map((object) => Object.keys(object).length);
        expect(counts).toEqual([13, 14, 12]);
    }
});

test('shortcuts are listed', async () => {
    await root.writeFile(`${root.home}/Desktop/vyr-office-vyr.desktop`, 'x');
    expect((await resultOf('getdesktopiconfile')).icon).toBe('vyr-office-vyr.desktop');
});

test('browsers are listed', async () => {
    await root.fake('firefox', '#!/bin/bash\necho Firefox 100\n');
    expect((await resultOf('stratcheckenv')).browserinfo).toContain('Firefox 100');
});

test('permissions are listed', async () => {
    await root.writeFile('/tmp/picked', 'x');
    await resultOf('exportspecialfileperm', ['/tmp/picked', '/tmp/listing']);
    expect(await root.readFile('/tmp/listing')).toMatch(/ \/tmp\/picked\n$/);
});
