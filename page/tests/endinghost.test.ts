import { describe, expect, it } from 'vitest';
import type { Host } from '@/client';
import { endingHost } from '@/frame/endinghost';

/** A host whose calls are answered when the test says so. */
function scripted() {
    const answers: (() => void)[] = [];
    const lines: ((line: unknown) => void)[] = [];
    const host: Host = {
        call: (command, _args, listen) =>
            new Promise((resolve) => {
                answers.push(() => resolve({ result: command }));
                if (listen) lines.push(listen);
            }),
        operations: ['task.report'],
        theme: 'light',
        language: 'en',
    };
    return { host, answers, lines };
}

/** Lets everything happen that only waits for its turn. */
const settled = (): Promise<void> => new Promise((resolve) => setTimeout(resolve));

describe('the host of a view', () => {
    it('is the shell as long as the view is shown', async () => {
        const { host, answers, lines } = scripted();
        const ending = endingHost(() => host);
        expect(ending.host()?.operations).toEqual(['task.report']);
        const heard: unknown[] = [];
        const answer = ending.host()!.call('router', {}, (line) => heard.push(line));
        lines[0]!('line');
        answers[0]!();
        expect(await answer).toEqual({ result: 'router' });
        expect(heard).toEqual(['line']);
    });

    it('answers nothing to a view that has ended, and takes no more calls', async () => {
        const { host, answers, lines } = scripted();
        const ending = endingHost(() => host);
        const heard: unknown[] = [];
        const note = (what: unknown): number => heard.push(what);
        const current = ending.host()!;
        void current.call('router', {}, note).then(note, note);
        ending.end();
        lines[0]!('line');
        answers[0]!();
        void ending.host()!.call('apilog').then(note, note);
        void current.call('apilog').then(note, note);
        await settled();
        expect(heard).toEqual([]);
        expect(answers.length).toBe(1);
    });

    it('is absent where there is no shell', () => {
        expect(endingHost(() => undefined).host()).toBe(undefined);
    });
});
