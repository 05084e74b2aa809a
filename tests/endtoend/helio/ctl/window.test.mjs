import { afterEach, beforeEach, describe, expect, test } from 'vitest';

import { Session } from '../../assistantctl.mjs';
import { SandboxRoot } from '../../sandboxroot.mjs';

let root;
let session;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    session = Session.start(root);
});

afterEach(async () => root.dispose());

const signals = () =>
    session.traced('signal').map(({ page, signal, args }) => [page, signal, args]);

async function tips() {
    await session.wait(0);
    return session.traced('callback').map(({ page, callback, result }) => [page, callback, result]);
}

test.each([
    ['mousePress', 'sigMousePress'],
    ['mouseRelease', 'sigMouseRelease'],
    ['closemainwindow', 'sigCloseMainWindow'],
    ['showminimized', 'sigShowMinimized'],
])('%s only emits %s and sets no result', async (command, signal) => {
    for (const page of ['main', 'child']) {
        const answer = await session.send({ page, command });
        expect(answer).not.toHaveProperty('result');
    }
    expect(signals()).toEqual([
        ['main', signal, []],
        ['child', signal, []],
    ]);
    expect(await tips()).toEqual([]);
});

describe('router', () => {
    test.each(['', 'crash', 'searchfile', 'other', 'CRASH'])(
        'with type "%s" shows the tip, changes the page, shows the window',
        async (type) => {
            const answer = await session.send({
                command: 'router',
                args: { page: 'a.html', type },
            });
            expect(answer.result).toBe('success');
            expect(signals()).toEqual([
                ['main', 'sigChangeHtmlPage', ['a.html']],
                ['main', 'sigShowChildWindow', ['a.html']],
            ]);
            const shown = session.traced('signal').at(-1);
            expect(session.events.indexOf(answer)).toBeGreaterThan(session.events.indexOf(shown));
            expect(await tips()).toEqual([['main', 'hiddentipCallBack', 'show']]);
        },
    );

    test('without arguments passes an empty page on', async () => {
        expect((await session.send({ command: 'router' })).result).toBe('success');
        expect(signals()).toEqual([
            ['main', 'sigChangeHtmlPage', ['']],
            ['main', 'sigShowChildWindow', ['']],
        ]);
    });

    test('sends the tip to the page that asked', async () => {
        await session.send({ page: 'child', command: 'router', args: { page: 'a' } });
        expect(await tips()).toEqual([['child', 'hiddentipCallBack', 'show']]);
    });
});

describe('closechildwindow', () => {
    test.each(['', 'crash', 'vyrrunningcheck', 'other'])(
        'with type "%s" closes the window, sets no result, hides the tip of the main page',
        async (type) => {
            const answer = await session.send({
                page: 'child',
                command: 'closechildwindow',
                args: { type },
            });
            expect(answer).not.toHaveProperty('result');
            expect(signals()).toEqual([['child', 'sigCloseChildWindow', []]]);
            expect(await tips()).toEqual([['main', 'hiddentipCallBack', 'hide']]);
        },
    );

    test('from the main page hides the main page’s tip too', async () => {
        await session.send({ command: 'closechildwindow' });
        expect(await tips()).toEqual([['main', 'hiddentipCallBack', 'hide']]);
    });

    test('forgets the collection page of its own page only', async () => {
        for (const page of ['main', 'child']) {
            await session.send({ page, command: 'feedbacktovyr', args: { infopage: page } });
        }
        await session.send({ page: 'child', command: 'closechildwindow' });
        expect(
            (await session.send({ page: 'child', command: 'getcollectionpage' })).result,
        ).toEqual({ page: '' });
        expect((await session.send({ command: 'getcollectionpage' })).result).toEqual({
            page: 'main',
        });
    });
});
