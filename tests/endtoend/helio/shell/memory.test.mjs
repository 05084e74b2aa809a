import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { beforeEach, expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();
const file = () => path.join(shared.suite.home, '.config/office-assistant/window.ini');
const kept = (text) =>
    waitFor(() => fs.existsSync(file()) && fs.readFileSync(file(), 'utf8').includes(text), {
        what: `${text} in the window's file`,
    });

beforeEach(() => fs.rmSync(path.dirname(file()), { recursive: true, force: true }));

/** Starts the window as a user does, without developer tools. */
async function startForUser() {
    const program = await shared.start([], { debug: false });
    const [window] = await shared.display.windowCount(1);
    await shared.display.focused(window);
    return { program, window };
}

async function placed(window, place) {
    await waitFor(
        async () => {
            const now = await shared.display.geometry(window);
            return Object.entries(place).every(([name, value]) => now[name] === value);
        },
        { what: JSON.stringify(place) },
    );
}

test('the window opens where it was and as large as it was, also after it was killed', async () => {
    const { program, window } = await startForUser();
    await shared.display.act('windowsize', window, 850, 560, 'windowmove', window, 90, 70);
    await placed(window, { x: 90, y: 70, width: 850, height: 560 });
    await kept('area=@Rect(90 70 850 560)');
    program.signal('SIGKILL');
    await program.waitForExit();
    await placed((await startForUser()).window, { x: 90, y: 70, width: 850, height: 560 });
});

test('a maximised window opens maximised, and has its earlier size when it is restored', async () => {
    const { program, window } = await startForUser();
    await shared.display.act('windowsize', window, 850, 560);
    await placed(window, { width: 850, height: 560 });
    await kept('850 560');
    await shared.display.act('key', 'super+Up');
    fs.writeFileSync(
        file(),
        fs.readFileSync(file(), 'utf8').replace('maximised=false', 'maximised=true'),
    );
    program.signal('SIGKILL');
    await program.waitForExit();
    await placed((await startForUser()).window, { width: 1400, height: 1000 });
    expect(fs.readFileSync(file(), 'utf8')).toContain('850 560');
});

test('a window whose screen has gone opens on one that is there', async () => {
    fs.mkdirSync(path.dirname(file()), { recursive: true });
    fs.writeFileSync(file(), '[window]\narea=@Rect(5000 -900 3000 600)\n');
    await placed((await startForUser()).window, { x: 0, y: 0, width: 1400, height: 600 });
});
