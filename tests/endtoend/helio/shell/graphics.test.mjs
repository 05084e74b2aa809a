import fs from 'node:fs';
import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

/** Whether Qt draws through OpenGL, which Mesa offers without a graphics device, too. */
const hasOpenGl = ({ pid }) =>
    fs.readFileSync(`/proc/${pid}/maps`, 'utf8').includes('/xcbglintegrations/');

const drawnBy = async (what) => {
    const program = await shared.start(['--graphics', what]);
    const page = await program.page();
    expect(await page.evaluate('document.title')).toBe('Main page');
    return program;
};

test('the processor draws without OpenGL, and Qt does not complain', async () => {
    const program = await drawnBy('processor');
    expect(hasOpenGl(program)).toBe(false);
    expect(program.stderr).not.toMatch(/Cannot create|webenginecontext/);
});

test('the graphics device draws through OpenGL', async () => {
    expect(hasOpenGl(await drawnBy('device'))).toBe(true);
});
