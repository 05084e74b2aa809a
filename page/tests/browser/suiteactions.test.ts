import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { sentCommands } from './harness.mjs';
import { lastSent, named, play, sent, useBrowser } from './playing';

useBrowser();

async function sentNames(view: Page): Promise<string[]> {
    return (await sentCommands(view)).map(({ command }) => command);
}

async function closesAs(view: Page, type: string): Promise<void> {
    await view.keyboard.press('Escape');
    await sent(view, 'closechildwindow');
    expect(await lastSent(view)).toEqual([{ command: 'closechildwindow', args: { type } }]);
}

describe('the desktop shortcuts', () => {
    it('are put back only after the question, and then listed until they rest', () =>
        play(named('shortcuts-asking', { fixfouricon: { result: 'success' } }), async (view) => {
            expect(await sentNames(view)).toEqual(['getdesktopiconfile']);
            await view.locator('.ask-once-confirm').click();
            await view.getByText('Restored and checked again').waitFor();
            expect(await sentNames(view)).toEqual([
                'getdesktopiconfile',
                'fixfouricon',
                'getdesktopiconfile',
                'getdesktopiconfile',
            ]);
        }));

    it('are put back as the integrated one when that is chosen', () =>
        play(named('shortcuts', { fixoneicon: { result: 'success' } }), async (view) => {
            await view.locator('input[value="integrated"]').check();
            await view.locator('.ask-once-start').click();
            await view.locator('.ask-once-confirm').click();
            await sent(view, 'fixoneicon');
            expect(await sentNames(view)).not.toContain('fixfouricon');
        }));

    it('are put back with the doctor watching, and can be undone', () =>
        play(named('shortcuts-undone'), async (view) => {
            const sentNow = await sentCommands(view);
            expect(sentNow.map(({ command }) => command)).toEqual([
                'getdesktopiconfile',
                'doctor.preview',
                'doctor.watch',
                'fixfouricon',
                'getdesktopiconfile',
                'getdesktopiconfile',
                'doctor.watched',
                'doctor.undo',
                'getdesktopiconfile',
            ]);
            expect(sentNow[2]!.args).toEqual({ command: 'fixfouricon' });
            expect(sentNow[7]!.args).toEqual({ journal: 4 });
            await view.getByText('What was changed').waitForNone();
        }));

    it('are not touched when the doctor cannot watch', () =>
        play(named('shortcuts-waiting'), async (view) => {
            expect(await sentNames(view)).not.toContain('fixfouricon');
        }));

    it('are not put back twice at once', () =>
        play(named('shortcuts-asking', { fixfouricon: { never: true } }), async (view) => {
            await view.locator('.ask-once-confirm').click();
            await sent(view, 'fixfouricon');
            await view.locator('.ask-once-start[aria-disabled]').waitFor();
            await view.keyboard.press('F5');
            expect((await sentNames(view)).slice(1)).toEqual(['fixfouricon']);
        }));
});

describe('the associations', () => {
    it('cannot be repaired or copied without the desktop’s tool, and the controls say why', () =>
        play(named('associations-no-tools'), async (view) => {
            for (const [name, reason] of [
                ['Fix…', "Install the desktop's tool"],
                ['Copy as text', "The desktop's tool for document types is missing"],
            ]) {
                const button = view.locator('button', { named: name });
                expect(await button.isDisabled()).toBe(true);
                expect(
                    await button.evaluate((element) =>
                        element.closest('[title]')?.getAttribute('title'),
                    ),
                ).toContain(reason);
            }
            await view.getByText('need a fix').waitForNone();
        }));

    it('cannot be repaired when all is well, and the button says so', () =>
        play(named('associations-by-commands'), async (view) => {
            const button = view.locator('.ask-once-start');
            expect(await button.isDisabled()).toBe(true);
            expect(await view.locator('.ask-once > span').getAttribute('title')).toContain(
                'There is nothing to fix',
            );
        }));

    it('are copied as text with unseen characters named', () =>
        play(named('associations-problems'), async (view) => {
            await view.locator('button', { named: 'Copy as text' }).click();
            await sent(view, 'copytoclipboard');
            const [copying] = await lastSent(view);
            const copied = String(copying?.args?.verification);
            expect(copied).toContain('.doc\tapplication/x-other⟨U+202E⟩\t');
            expect(copied.match(/^\./gm)).toHaveLength(39);
        }));
});

describe('the documents', () => {
    it('are sent as the path that was chosen, in base64', () =>
        play(named('missingfonts-found'), async (view) => {
            expect(await lastSent(view)).toEqual([
                {
                    command: 'comparefont',
                    args: {
                        filepath: Buffer.from('/home/user/Documents/report.docx').toString(
                            'base64',
                        ),
                    },
                },
            ]);
            await view.getByText('Continue to feedback').click();
            await sent(view, 'router');
            expect(await lastSent(view, 2)).toEqual([
                { command: 'feedbacktovyr', args: { infopage: 'missingfonts' } },
                { command: 'router', args: { page: 'feedback.html', type: '' } },
            ]);
        }));

    it('of a type that the suite cannot be asked about are not sent', () =>
        play(named('missingfonts-wrong-type'), async (view) => {
            expect(await sentNames(view)).toEqual(['choosesamplefile']);
        }));
});

describe('the updater', () => {
    it('gets a changed setting as key and value in one', () =>
        play(named('updater-edited'), async (view) => {
            expect(await lastSent(view, 2)).toEqual([
                { command: 'changeupdateconfig', args: { keyvalue: 'channel$beta' } },
                { command: 'getupdateconfig' },
            ]);
        }));

    it('leaves a new setting in its fields until it is stored', () =>
        play(named('updater-not-writable'), async (view) => {
            const key = view.locator('.configuration-new input', { nth: 0 });
            const value = view.locator('.configuration-new input', { nth: 1 });
            expect(await key.inputValue()).toBe('added');
            await key.fill('channel2');
            await value.fill('beta');
            await view.evaluate(() => {
                const { helio } = window;
                const stored = { result: { channel2: 'beta' } };
                window.helio = {
                    ...helio!,
                    call: (command, args) =>
                        command === 'getupdateconfig'
                            ? Promise.resolve(stored)
                            : helio!.call(command, args),
                };
            });
            await view.keyboard.press('Enter');
            await view.getByText('Saved and read again.').waitFor();
            expect(await key.inputValue()).toBe('');
            expect(await value.inputValue()).toBe('');
        }));

    it('gets no value with a dollar sign', () =>
        play(named('updater-dollar'), async (view) => {
            await view.keyboard.press('Enter');
            expect(await sentNames(view)).not.toContain('changeupdateconfig');
        }));

    it('keeps a value when its edit is cancelled by keyboard', () =>
        play(named('updater-dollar'), async (view) => {
            await view.locator('tbody input').fill('beta');
            await view.locator('.configuration-edit button', { nth: 1 }).focus();
            await view.keyboard.press('Enter');
            await view.locator('tbody input').waitForNone();
            expect(await sentNames(view)).not.toContain('changeupdateconfig');
        }));

    it('keeps the view open when Escape ends an edit', () =>
        play(named('updater-dollar'), async (view) => {
            await view.keyboard.press('Escape');
            await view.locator('tbody input').waitForNone();
            expect(await sentNames(view)).not.toContain('closechildwindow');
        }));

    it('sends no report before it was confirmed', () =>
        play(named('updater-run-asking'), async (view) => {
            expect(await sentNames(view)).not.toContain('testuninstallreport');
        }));
});

describe('the document server', () => {
    it('gets what the preview shows', () =>
        play(named('server-form', { openremoveurlcheck: { result: 'success' } }), async (view) => {
            await view.locator('.server-send button').click();
            await sent(view, 'openremoveurlcheck');
            expect(await lastSent(view)).toEqual([
                {
                    command: 'openremoveurlcheck',
                    args: {
                        urlpath: 'https://server.example/save',
                        funcname: 'saveURL_FormData',
                        reqheader: 'X-Session:12 34',
                        reqtable: 'documentId:文档',
                    },
                },
            ]);
        }));

    it('gets exactly what the preview shows, where the shell times it', () =>
        play(named('server-timed-again'), async (view) => {
            expect((await lastSent(view))[0]).toMatchObject({
                command: 'task.request',
                args: { method: 'POST', url: 'https://server.example/save' },
            });
            const { headers } = (await lastSent(view))[0]!.args as {
                headers: { name: string; value: string }[];
            };
            expect(headers).toContainEqual({
                name: 'X-Session',
                value: 'http://referrer; and more',
            });
            expect(await view.locator('.request-row input', { nth: 1 }).inputValue()).toBe(
                'http://referrer; and more',
            );
        }));

    it('gets nothing while a row cannot be sent', () =>
        play(named('server-separator'), async (view) => {
            await view.keyboard.press('Enter');
            await view.keyboard.press('F5');
            expect(await sentNames(view)).toEqual([]);
        }));

    it('answers with a body that is only text', () =>
        play(named('server-not-found'), async (view) => {
            expect(await view.locator('.answer-body h1, .answer-body script').count()).toBe(0);
        }));

    it('is not asked twice at once', () =>
        play(named('server-never'), async (view) => {
            await view.keyboard.press('F5');
            expect(await sentNames(view)).toEqual(['openremoveurlcheck']);
        }));
});

describe('the file search', () => {
    it('closes as what it was opened as, so that it is stopped', () =>
        play(named('search-never'), (view) => closesAs(view, 'searchfile')));

    it('is stopped with an empty keyword, and takes no hit after that', () =>
        play(named('search-stopped'), async (view) => {
            expect((await lastSent(view))[0]?.args).toEqual({ keyword: '' });
            // The list has drawn again when this answers, so a late hit would be in it.
            await view.evaluate(
                () =>
                    new Promise((resolve) =>
                        requestAnimationFrame(() => requestAnimationFrame(resolve)),
                    ),
            );
            expect(await view.locator('.hit-row').count()).toBe(3);
        }));

    it('gives way to the search of tools, where the shell has one window', () =>
        play(
            {
                ...named('search-found', {
                    'window.find': { result: { view: '', maximised: false } },
                }),
                offers: ['window.find'],
            },
            async (view) => {
                await view.keyboard.press('Control+k');
                await sent(view, 'window.find');
                expect((await lastSent(view, 2)).map(({ command }) => command)).toEqual([
                    'closechildwindow',
                    'window.find',
                ]);
            },
        ));

    it('begins on its own once nothing more is typed', () =>
        play(named('search', { startsearchfile: {} }), async (view) => {
            await view.locator('.search-keyword input').fill('report');
            await sent(view, 'startsearchfile');
            expect((await lastSent(view))[0]?.args).toEqual({ keyword: 'report' });
            // It runs already, so Enter has nothing to start.
            await view.keyboard.press('Enter');
            await view.keyboard.press('F5');
            await sent(view, 'startsearchfile', 2);
            expect(await sentNames(view)).toEqual(['startsearchfile', 'startsearchfile']);
        }));

    it('marks what was searched for, whatever its case', () =>
        play(named('search-found'), async (view) => {
            const marks = await view.locator('.hit-row mark').allTextContents();
            expect(new Set(marks)).toEqual(new Set(['report', 'Report']));
        }));

    it('drops the hits of the search before, until the host has taken the new one', () =>
        play(
            named('search-late', {
                startsearchfile: [
                    {},
                    {
                        late: true,
                        notices: [
                            { callback: 'startsearchfileCallBack', result: { bmV3: 'Lw==' } },
                            { callback: 'searchfilefinish', result: 'success' },
                        ],
                    },
                ],
            }),
            async (view) => {
                await view.keyboard.press('F5');
                await sent(view, 'startsearchfile', 2);
                await view.evaluate(() => {
                    window.startsearchfileCallBack!({ result: { [btoa('old')]: btoa('/') } });
                    window.searchfilefinish!({ result: 'success' });
                    window.answerLate();
                });
                await view.getByText('Search complete. 1 found').waitFor();
                expect(await view.locator('.hit-row').allTextContents()).toEqual(['new/']);
            },
        ));
});

describe('feedback', () => {
    it('sends all that was filled in', () =>
        play(named('feedback-files', { archivepackage: { result: 'error' } }), async (view) => {
            await view.locator('textarea').fill('Two\nlines');
            await view.locator('input[value="print"]').check();
            await view.locator('.extras .switch', { nth: 1 }).click();
            await view.locator('.extras .switch', { nth: 2 }).click();
            await view.locator('.summary-panel .el-button--primary').click();
            await sent(view, 'archivepackage');
            expect(await lastSent(view)).toEqual([
                {
                    command: 'archivepackage',
                    args: {
                        archiveType: 'print',
                        archiveDescribe: 'Two\nlines',
                        archiveSample: '/home/user/Documents/report.docx',
                        archiveAttach1: '/home/user/screen one.png',
                        archiveAttach2: '/home/user/r\u202Eeport.docx',
                        archiveAttach3: '/tmp/report.docx',
                        archiveSysInfo: 'true',
                        archiveVyrInfo: false,
                        archiveDumpInfo: true,
                    },
                },
            ]);
        }));

    it('takes no fourth attachment, and says why', () =>
        play(named('feedback-files'), async (view) => {
            const attach = view.locator('.files-panel .button-row > span', { nth: 1 });
            expect(await attach.locator('button').isDisabled()).toBe(true);
            expect(await attach.getAttribute('title')).toContain('You can attach up to 3');
        }));

    it('closes as the view of crash dumps when it was opened from there', () =>
        play(named('feedback-crash'), (view) => closesAs(view, 'crash')));

    it('loses what was written only when it is closed once more', () =>
        play(named('feedback-unsaved'), async (view) => {
            expect(await sentNames(view)).not.toContain('closechildwindow');
            await closesAs(view, '');
        }));

    it.each([
        ['its button', (view: Page) => view.locator('.title-bar-button.closing').click()],
        [
            'the window',
            (view: Page) =>
                view.evaluate(
                    () => void dispatchEvent(new Event('helioclose', { cancelable: true })),
                ),
        ],
    ])('warns of that when %s closes it, too', (_, close) =>
        play(named('feedback-unkept'), async (view) => {
            await view.locator('textarea').fill('The third page is empty.');
            await sent(view, 'draft.keep');
            await close(view);
            await view.getByText('Close again to leave anyway').waitFor();
            expect(await sentNames(view)).not.toContain('closechildwindow');
            await close(view);
            await sent(view, 'closechildwindow');
        }),
    );

    it('warns again before it loses what was written after the first warning', () =>
        play(named('feedback-unsaved'), async (view) => {
            await view.locator('textarea').fill('A long text that came after it.');
            await view.keyboard.press('Escape');
            expect(await sentNames(view)).not.toContain('closechildwindow');
            await closesAs(view, '');
        }));
});
