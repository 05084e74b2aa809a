import { describe, expect, it } from 'vitest';
import { sentCommands } from './harness.mjs';
import { lastSent, named, play, sent, useBrowser } from './playing';

useBrowser();

describe('the view of crash dumps', () => {
    it('closes as what it was opened as, so that the watch ends', () =>
        play(named('crash-by-commands'), async (view) => {
            await view.keyboard.press('Escape');
            await sent(view, 'closechildwindow');
            expect(await lastSent(view)).toEqual([
                { command: 'closechildwindow', args: { type: 'crash' } },
            ]);
        }));

    it('hands over to feedback, which is told where it comes from', () =>
        play(named('crash-fresh'), async (view) => {
            await view.locator('.fresh-dump .el-button').click();
            await sent(view, 'router');
            expect(await lastSent(view, 2)).toEqual([
                { command: 'feedbacktovyr', args: { infopage: 'crash' } },
                { command: 'router', args: { page: 'feedback.html', type: '' } },
            ]);
        }));

    it('hands over once only, and says why the button waits', () =>
        play(named('crash-by-commands', { router: { never: true } }), async (view) => {
            const button = view.locator('.dump-actions .el-button--primary');
            await button.dblclick();
            await sent(view, 'router');
            expect(await button.isDisabled()).toBe(true);
            expect(
                await button.evaluate((element) =>
                    element.closest('[title]')!.getAttribute('title'),
                ),
            ).toBe('Opening feedback');
            const commands = (await sentCommands(view)).map(({ command }) => command);
            expect(commands.filter((name) => name === 'router')).toEqual(['router']);
        }));

    it('deletes nothing before it is confirmed, and Escape only withdraws the question', () =>
        play(named('crash-asked'), async (view) => {
            await view.keyboard.press('Escape');
            await view.locator('.ask-once-start').waitFor();
            const commands = (await sentCommands(view)).map(({ command }) => command);
            expect(commands).not.toContain('cleardumpdir');
            expect(commands).not.toContain('closechildwindow');
        }));

    it('shows the switch as the library reads it afterwards', () =>
        play(named('crash-by-commands'), async (view) => {
            await view.locator('.switch').click();
            await view.getByText('The setting did not change.').waitFor();
            expect(await view.locator('.switch').getAttribute('aria-checked')).toBe('true');
        }));
});

describe('the environment check', () => {
    it('closes as what it was opened as, so that a check under way is dropped', () =>
        play(named('environmentcheck-never'), async (view) => {
            await view.keyboard.press('Escape');
            await sent(view, 'closechildwindow');
            expect(await lastSent(view)).toEqual([
                { command: 'closechildwindow', args: { type: 'vyrrunningcheck' } },
            ]);
        }));

    it('does not start a second check while one runs', () =>
        play(named('environmentcheck-never'), async (view) => {
            await view.keyboard.press('F5');
            expect(await view.locator('.check-start .check-one').isDisabled()).toBe(true);
            expect(await view.locator('.check-start').getAttribute('title')).toContain(
                'A check is running',
            );
            const checks = (await sentCommands(view)).filter(
                ({ command }) => command === 'vyrenvcheck',
            );
            expect(checks).toEqual([
                { command: 'vyrenvcheck', args: { type: 'libraries', app: 'vyr', arg: '' } },
            ]);
        }));

    it('sends a check of one’s own as it was typed', () =>
        play(named('environmentcheck-other'), async (view) => {
            await view.locator('.check-fields input', { nth: 0 }).fill('own check');
            await view.locator('.check-fields input', { nth: 1 }).fill('-v');
            await view.keyboard.press('Enter');
            await sent(view, 'vyrenvcheck');
            expect(await lastSent(view)).toEqual([
                { command: 'vyrenvcheck', args: { type: 'own check', app: 'vyr', arg: '-v' } },
            ]);
        }));
});

describe('values from outside', () => {
    it('are text, never HTML', () =>
        play(
            named('permissions-by-commands', {
                stratextractfileinfo: {
                    result: {
                        '<img src=x onerror=alert(1)>': '<b>root</b>|g|110-100-100|1:1:1',
                        Orvane: 'root|root|110-000-000|1:1:1',
                    },
                },
            }),
            async (view) => {
                expect(await view.locator('.file-card img, .file-card b').count()).toBe(0);
                await view.getByText('<b>root</b>', { exact: true }).waitFor();
            },
        ));
});

describe('the view of processes', () => {
    it('asks for nothing more while it is paused', () =>
        play(named('processes-table'), async (view) => {
            const reads = (await sentCommands(view)).filter(
                ({ command }) => command === 'getcpuinfo',
            ).length;
            await view.keyboard.press('F5');
            await sent(view, 'getcpuinfo', reads + 1);
            const before = (await sentCommands(view)).length;
            await view.advanceTime(60_000);
            expect((await sentCommands(view)).length).toBe(before);
        }));

    it('says when it last read, and reads that out only to who asked for it', () =>
        play(named('processes-full'), async (view) => {
            const spoken = view.locator('.frame > [role="status"]');
            await view.locator('.status-line').getByText('Updated at').waitFor();
            expect(await spoken.textContent()).toBe('');
            // Paused, nothing but the key makes it read.
            await view.locator('.history-actions button', { nth: 1 }).click();
            await view.keyboard.press('F5');
            await spoken.getByText('Updated at').waitFor();
        }));

    it('goes on by itself', () =>
        play(named('processes-full'), async (view) => {
            await view.keyboard.press('F5');
            await sent(view, 'getcpuinfo', 2);
            await view.advanceTime(6000);
            await sent(view, 'getcpuinfo', 3);
        }));
});

describe('the check-up', () => {
    it('opens the view that fixes a finding, and checks again when that has closed', () =>
        play(named('home'), async (view) => {
            await view.locator('button', { named: 'Open “Input method”' }).click();
            await sent(view, 'router');
            expect(await lastSent(view)).toEqual([
                { command: 'router', args: { page: 'inputmethod.html', type: '' } },
            ]);
            await view.evaluate(() => window.hiddentipCallBack!({ result: 'show' }));
            await view.locator('.veil').waitFor();
            await view.evaluate(() => window.hiddentipCallBack!({ result: 'hide' }));
            await sent(view, 'doctor.look', 2);
            expect(await lastSent(view)).toEqual([
                {
                    command: 'doctor.look',
                    args: { language: 'en', checks: ['input.ibus-not-running'] },
                },
            ]);
        }));

    it('remembers what is ignored when the page is opened again', () =>
        play(named('home-ignored'), async (view) => {
            const stored = await view.until(() =>
                localStorage.getItem('assistant.ignoredFindings'),
            );
            expect(stored).toContain('memory.full');
            // A renderer that is ended at once can lose what it has just stored.
            await view.addInitScript(
                `localStorage.setItem('assistant.ignoredFindings', ${JSON.stringify(stored)})`,
            );
            await view.reload();
            await view.locator('.frame:not([aria-busy])').waitFor();
            await view.getByText('One ignored problem').waitFor();
            await view.getByText('All is well, except for what you ignore').waitFor();
        }));

    it('changes nothing before its plan was shown, and then what was shown', () =>
        play(named('home-planned'), async (view) => {
            expect(await lastSent(view)).toEqual([
                { command: 'doctor.plan', args: { findings: [4], repair: 'keep' } },
            ]);
            await view.keyboard.press('Escape');
            await view.until(() => !document.querySelector('.plan'));
            await view.locator('.finding-actions .primary').click();
            await view.locator('.plan .primary').click();
            await view.locator('.checkup-done').waitFor();
            const fixes = (await sentCommands(view)).filter((one) => one.command === 'doctor.fix');
            expect(fixes).toEqual([{ command: 'doctor.fix', args: { language: 'en', plan: 9 } }]);
        }));

    it('copies the command for the administrator', () =>
        play(named('home-administrator'), async (view) => {
            await view.locator('.command-line button').click();
            await sent(view, 'copytoclipboard');
            expect((await lastSent(view))[0]!.args).toEqual({
                verification: 'sudo chown user /home/user/.config/Orvane/Office.conf',
            });
        }));

    it('sends its result with what was typed into the feedback before', () =>
        play(named('home'), async (view) => {
            await view.evaluate(() =>
                localStorage.setItem(
                    'assistant.feedbackDraft',
                    JSON.stringify({ category: 'print', description: 'It prints nothing' }),
                ),
            );
            await view.locator('.send-result').click();
            await sent(view, 'router');
            expect((await lastSent(view))[0]!.args).toEqual({ page: 'feedback.html', type: '' });
            const draft = await view.evaluate(
                () =>
                    JSON.parse(localStorage.getItem('assistant.feedbackDraft') ?? '') as {
                        category: string;
                        description: string;
                    },
            );
            expect(draft.category).toBe('print');
            expect(draft.description).toMatch(/^It prints nothing\n\n5 things to look at\n/);
            expect(draft.description).toContain('The input method ibus is not running.');
        }));

    it('finds tools, findings and settings by the keyboard alone, and gives the focus back', () =>
        play(named('home'), async (view) => {
            await view.locator('.checkup-start').focus();
            const focused = () =>
                view.evaluate(() => {
                    const { classList, textContent } = document.activeElement!;
                    return `${classList} ${textContent}`;
                });
            const start = await focused();
            const find = async (text: string) => {
                await view.keyboard.press('Control+k');
                await view.locator('.finder-field').fill(text);
            };
            await find('no such thing');
            await view.getByText('Nothing was found.').waitFor();
            await view.keyboard.press('Escape');
            await view.until(() => !document.querySelector('.finder'));
            expect(await focused()).toBe(start);

            await find('theme dark');
            await view.keyboard.press('Enter');
            await view.until(() => document.documentElement.classList.contains('dark'));
            expect(await focused()).toBe(start);

            await find('memory almost full');
            await view.keyboard.press('Enter');
            await view.until(() => document.activeElement?.closest('.finding-card'));
            expect(await focused()).toContain('Open “Processes and memory”');

            await find('crash');
            await view.keyboard.press('ArrowDown');
            await view.keyboard.press('ArrowUp');
            await view.keyboard.press('Enter');
            await sent(view, 'router');
            expect((await lastSent(view))[0]!.args).toMatchObject({ page: 'crash.html' });
        }));

    it('takes a repair of the history back', () =>
        play(named('home-history'), async (view) => {
            await view.locator('.history .push-button').click();
            await view.getByText('Undone: Open with the suite again').waitFor();
            const undos = (await sentCommands(view)).filter((one) => one.command === 'doctor.undo');
            expect(undos).toEqual([{ command: 'doctor.undo', args: { journal: 3 } }]);
        }));

    it('can be stopped', () =>
        play(named('home-never'), async (view) => {
            await view.locator('button', { named: 'Stop' }).click();
            await sent(view, 'doctor.cancel');
        }));

    it('looks again in the language that was chosen', () =>
        play(named('home-well'), async (view) => {
            await view.evaluate(() => {
                const chosen = { theme: 'system', language: 'zh-CN', textSize: 100 };
                const newValue = JSON.stringify(chosen);
                window.dispatchEvent(
                    new StorageEvent('storage', { key: 'assistant.preferences', newValue }),
                );
            });
            await sent(view, 'doctor.look', 2);
            expect((await lastSent(view))[0]!.args).toMatchObject({ language: 'zh-CN' });
        }));

    it('is left out by a shell that does not offer it', () =>
        play(named('home-without-doctor'), async (view) => {
            expect(await view.evaluate(() => document.querySelector('.checkup'))).toBe(null);
        }));
});
