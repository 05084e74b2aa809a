import fs from 'node:fs';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { ViewPage } from './viewpage.mjs';
import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.feedback;
const shared = viewTests();
const typed = 'The third page is empty';
const draftFile = () => shared.inHome('.local/state/office-assistant/feedback-draft.json');

async function typing() {
    const { home, view } = await shared.open('feedback');
    await view.fill(texts.description, typed);
    return { home, view };
}

const descriptionOf = (view) => view.evaluate("document.querySelector('textarea').value");

/** The view once it has its draft from earlier. */
async function restored(view) {
    await view.shows(texts.restored, patience);
    return view;
}

/** Goes back to the overview and opens the view again, which shows the draft from earlier. */
async function reopened({ home, view }) {
    await view.evaluate("document.querySelector('textarea').isEarlier = true");
    await view.press(pageTexts.frame.back);
    await home.shows(pageTexts.home.groups.machine, patience);
    await home.press('the tile');
    const isNew = "document.querySelector('textarea')?.isEarlier === undefined";
    // Between two documents, which the views may have, there is none to ask.
    await waitFor(() => view.evaluate(isNew).catch(() => false), {
        ...patience,
        what: 'the new view',
    });
    return restored(view);
}

test('a draft survives the end of the page’s process', async () => {
    await typing();
    await shared.fileWith(draftFile(), (text) => text.includes(typed));
    const before = shared.program.renderers();
    for (const pid of before) process.kill(pid, 'SIGKILL');
    await waitFor(() => before.every((pid) => !shared.program.renderers().includes(pid)));
    const [window] = await shared.display.windowCount(1);
    await shared.display.focused(window);
    const view = await waitFor(
        async () => {
            await shared.display.act('key', 'F5');
            return shared.program
                .page('feedback.html', { Kind: ViewPage, timeoutMs: 5000 })
                .catch(() => null);
        },
        { ...patience, what: 'the view after its reload' },
    );
    expect(await descriptionOf(await restored(view))).toBe(typed);
});

test('a draft survives the end of every process at once', async () => {
    const { view } = await typing();
    // While somebody types, what was typed before is kept.
    await view.evaluate(`window.typing = setInterval(() => {
        const field = document.querySelector('textarea');
        field.value += '.';
        field.dispatchEvent(new Event('input'));
    }, 100); undefined`);
    const text = await shared.fileWith(draftFile(), (kept) => kept.includes(`${typed}...`));
    shared.program.crash();
    await shared.program.waitForExit();
    const { view: next } = await shared.open('feedback');
    const { description } = JSON.parse(text);
    expect((await descriptionOf(await restored(next))).startsWith(description)).toBe(true);
});

test('what was typed last survives the end of the window, and nobody else can read it', async () => {
    const { view } = await typing();
    void view.press(pageTexts.frame.close).catch(() => {});
    await shared.program.waitForExit();
    expect(JSON.parse(fs.readFileSync(draftFile(), 'utf8')).description).toBe(typed);
    expect(fs.statSync(draftFile()).mode & 0o777).toBe(0o600);
    const { view: next } = await shared.open('feedback');
    expect(await descriptionOf(await restored(next))).toBe(typed);
});

test('a draft is gone once it is packed, or discarded', async () => {
    const { home, view } = await typing();
    await shared.fileWith(draftFile(), (text) => text.includes(typed));
    await view.press(texts.build);
    await shared.choose('Save File', shared.inHome('problem'));
    await view.shows(texts.written, patience);
    await waitFor(() => !fs.existsSync(draftFile()), { what: 'the end of the draft' });

    await view.fill(texts.description, 'Another matter');
    await shared.fileWith(draftFile(), (text) => text.includes('Another matter'));
    const later = await reopened({ home, view });
    await later.press(texts.discard);
    await waitFor(() => !fs.existsSync(draftFile()), { what: 'the end of the draft' });
    expect(await descriptionOf(later)).toBe('');
});
