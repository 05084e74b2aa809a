import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';
import { afterAll, beforeAll, expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();
let bus;
let env;

beforeAll(async () => {
    env = { DBUS_SESSION_BUS_ADDRESS: `unix:path=${path.join(shared.suite.directory, 'bus')}` };
    const words = ['--session', '--nofork', '--print-address', '--address'];
    bus = start('dbus-daemon', [...words, env.DBUS_SESSION_BUS_ADDRESS], {
        stdio: ['ignore', 'pipe', 'ignore'],
    });
    let address = '';
    bus.stdout.on('data', (text) => {
        address += text;
    });
    await waitFor(() => address.includes('\n'), { what: 'the session bus' });
});

afterAll(() => end(bus));

const startForUser = (args = []) => shared.start(args, { debug: false, env });

test('a second start shows the window of the first, minimised or behind another', async () => {
    const first = await startForUser();
    const [window] = await shared.display.windowCount(1);
    await shared.display.focused(window);
    await shared.display.act('windowminimize', window);
    await shared.display.windowCount(0);
    const second = await startForUser();
    expect(await second.waitForExit()).toMatchObject({ status: 0, signal: null });
    expect(await shared.display.windowCount(1)).toEqual([window]);
    await shared.display.focused(window);
    first.signal('SIGTERM');
    expect(await first.waitForExit()).toMatchObject({ status: 0 });
});

test('the place is free again when the first has ended', async () => {
    const first = await startForUser();
    await shared.display.windowCount(1);
    first.signal('SIGKILL');
    await first.waitForExit();
    await startForUser();
    await shared.display.windowCount(1);
});

test('a start with the developer tools has a window of its own', async () => {
    await startForUser();
    await shared.display.windowCount(1);
    await shared.start([], { env });
    await shared.display.windowCount(2);
});
