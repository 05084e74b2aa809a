import { afterAll, beforeAll, expect, test } from 'vitest';

import { SessionBus } from './sessionbus.mjs';
import { windowTests } from './windowtest.mjs';

const shared = windowTests();
let bus;

beforeAll(async () => {
    bus = await SessionBus.start(shared.suite);
});

afterAll(() => bus?.stop());

const startForUser = (args = []) => shared.start(args, { debug: false, env: bus.env });

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
    await shared.start([], { env: bus.env });
    await shared.display.windowCount(2);
});
