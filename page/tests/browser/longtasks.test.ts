import { describe, expect, it } from 'vitest';
import { sentCommands, type Scene } from './harness.mjs';
import { lastSent, named, open, sent, useBrowser } from './playing';

useBrowser();

/** What takes long, in a shell where it never ends, with the control that starts it, if any. */
const long: { task: string; scene: Scene; start?: string; also?: string[] }[] = [
    { task: 'task.check', scene: named('environmentcheck-found'), start: '.check-one' },
    { task: 'task.print', scene: named('print-pictured'), start: '.el-button--primary' },
    {
        task: 'task.print',
        scene: named('layout-pictured'),
        start: '.step-card:nth-child(2) .button-row .el-button:nth-child(2)',
        also: ['task.preview'],
    },
    { task: 'task.fonts', scene: named('missingfonts-found'), start: '.el-button--primary' },
    { task: 'task.request', scene: named('server-timed'), start: '.server-send button' },
    { task: 'task.server', scene: named('server-success'), start: '.server-send button' },
    {
        task: 'task.archive',
        scene: named('feedback-built'),
        start: '.summary-panel .el-button--primary',
    },
    { task: 'task.report', scene: named('home-exported'), start: '.report-actions .primary' },
    { task: 'task.associations', scene: named('associations') },
];

describe('what takes long', () => {
    it.concurrent.each(long)(
        '$task of $scene.page is cancelled, and not started twice',
        async ({ task, scene, start, also = [] }) => {
            const view = await open({
                ...scene,
                answers: {
                    ...scene.answers,
                    [task]: { never: true },
                    'task.findings': { result: { findings: {} } },
                    'task.cancel': { result: {} },
                },
                offers: [...(scene.offers ?? []), task, 'task.cancel', 'task.findings', ...also],
            });
            void scene.act?.(view).catch(() => undefined);
            const cancel = view.locator('.task-state button', { named: 'Cancel' });
            await cancel.waitFor();
            expect(await view.locator('.task-state [role="timer"]').textContent()).toMatch(
                /^\d+ sec/,
            );

            await view.evaluate(
                (selector) => document.querySelector<HTMLElement>(selector)!.click(),
                start ?? 'main',
            );
            await view.keyboard.press('F5');
            await cancel.click();
            await sent(view, 'task.cancel');
            expect(await lastSent(view)).toEqual([{ command: 'task.cancel', args: { task } }]);
            const starts = (await sentCommands(view)).filter(({ command }) => command === task);
            expect(starts).toHaveLength(1);
            await view.getByText('Cancelling…').waitFor();
            await view.close();
        },
    );
});
