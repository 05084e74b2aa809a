import { describe, expect, it } from 'vitest';
import { sentCommands } from './harness.mjs';
import { named, play, sent, useBrowser } from './playing';

useBrowser();

describe('feedback', () => {
    it('does not call a file part of the archive that is no longer there', () =>
        play(named('feedback-dropped'), async (view) => {
            const text = await view.evaluate(
                () => document.querySelector<HTMLElement>('.summary-panel')!.innerText,
            );
            expect(text).toContain('A file is no longer there.');
            await view.locator('.files-panel li button', { nth: -1 }).click();
            await view.until(() => !document.querySelector('.summary-left'));
        }));

    it('leaves the folder closed where it is to be sent to an address', () =>
        play(named('feedback-addressed'), async (view) => {
            const archive = (await sentCommands(view)).find(
                ({ command }) => command === 'task.archive',
            );
            expect(archive?.args).toMatchObject({ open: false });
        }));
});

describe('a print', () => {
    it('is shown in the view, and on the desktop only when that is asked for', () =>
        play(named('print-pictured', { opensearchfile: { result: 'success' } }), async (view) => {
            const print = (await sentCommands(view)).find(
                ({ command }) => command === 'task.print',
            );
            expect(print?.args).toMatchObject({ open: false });
            await view.locator('button', { named: 'Open the PDF' }).click();
            await sent(view, 'opensearchfile');
        }));
});

describe('a layout problem', () => {
    it('has the chosen document laid out without another dialog', () =>
        play(named('layout-pictured'), async (view) => {
            const print = (await sentCommands(view)).find(
                ({ command }) => command === 'task.print',
            );
            expect(print?.args).toMatchObject({
                path: '/home/user/Documents/r\u202Eeport.docx',
                open: false,
            });
        }));
});
