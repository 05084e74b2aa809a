import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import type { Outcome } from '@/client';
import { matcher } from '@/tasks/filter';
import { defaults, languageOf, parsePreferences, themeOf } from '@/frame/preferences';
import english from '@/frame/texts.en.json';
import { createTexts, sizeText } from '@/frame/texts';
import { useTask } from '@/tasks/task';
import { textPieces, visibleText } from '@/parts/visibletext';

describe('visible text', () => {
    it.each([
        ['plain 文字 ü', 'plain 文字 ü'],
        ['a\u202Egnp.exe', 'a⟨U+202E⟩gnp.exe'],
        ['bell\u0007', 'bell⟨U+0007⟩'],
        ['zero\u200Bwidth', 'zero⟨U+200B⟩width'],
        ['\u2066isolate\u2069', '⟨U+2066⟩isolate⟨U+2069⟩'],
        ['line\u2028end', 'line⟨U+2028⟩end'],
        ['tag\u{E0041}', 'tag⟨U+E0041⟩'],
        ['😀', '😀'],
    ])('names what would not show in %j', (text, expected) => {
        expect(visibleText(text)).toBe(expected);
    });

    it('marks named characters apart from a look-alike text', () => {
        expect(textPieces('⟨U+202E⟩')).toEqual([{ text: '⟨U+202E⟩' }]);
        expect(textPieces('\u202E')).toEqual([{ text: '⟨U+202E⟩', codePoint: 'U+202E' }]);
    });
});

describe('a size', () => {
    const texts = createTexts('en', () => ({ units: english.units }));
    const size = (bytes: number): string =>
        sizeText(bytes, (key, values = {}, count = 0) => texts.t(key, values, count), 'en');

    it.each([
        [0, '0 bytes'],
        [1, '1 byte'],
        [30, '30 bytes'],
        [1023, '1023 bytes'],
        [1024, '1 KiB'],
        [48_211, '47.1 KiB'],
        [1024 ** 2 - 1, '1 MiB'],
        [1.25 * 1024 ** 3, '1.3 GiB'],
        [5000 * 1024 ** 4, '5,000 TiB'],
    ])('of %d is %s', (bytes, text) => {
        expect(size(bytes)).toBe(text);
    });
});

describe('the filter', () => {
    it('wants every word, in any of the texts, whatever the case', () => {
        const matches = matcher(' sans  BOLD ');
        expect(matches('Noto Sans', 'Bold')).toBe(true);
        expect(matches('Noto Sans', 'Regular')).toBe(false);
    });

    it('lets everything through when it is empty', () => {
        expect(matcher('  ')('anything')).toBe(true);
    });
});

describe('preferences', () => {
    it.each([null, '', '{', 'null', '[]', '{"theme":"pink","textSize":"150"}'])(
        'fall back to the defaults for %j',
        (stored) => {
            expect(parsePreferences(stored)).toEqual(defaults);
        },
    );

    it('are read back', () => {
        const chosen = { theme: 'dark', language: 'zh-CN', textSize: 150 } as const;
        expect(parsePreferences(JSON.stringify(chosen))).toEqual(chosen);
    });

    it('follow the host unless chosen', () => {
        const host = { theme: 'dark', language: 'zh_CN' } as const;
        expect(themeOf(defaults, host)).toBe('dark');
        expect(languageOf(defaults, host)).toBe('zh-CN');
        expect(themeOf({ ...defaults, theme: 'light' }, host)).toBe('light');
        expect(languageOf({ ...defaults, language: 'en' }, host)).toBe('en');
    });

    it.each([
        ['zh_CN', 'zh-CN'],
        ['zh-Hans-CN', 'zh-CN'],
        ['en_US', 'en'],
        ['de_DE', 'en'],
        ['C', 'en'],
    ])('take the language %s as %s', (language, expected) => {
        expect(languageOf(defaults, { language })).toBe(expected);
    });
});

describe('a task', () => {
    beforeEach(() => void vi.useFakeTimers());
    afterEach(() => void vi.useRealTimers());

    function slowTask() {
        let finish: (outcome: Outcome<number>) => void = () => undefined;
        const work = vi.fn(
            () =>
                new Promise<Outcome<number>>((resolve) => {
                    finish = resolve;
                }),
        );
        return {
            task: useTask(work),
            work,
            finish: (value: number) => finish({ kind: 'done', value }),
        };
    }

    it('shows its progress sign only after half a second', async () => {
        const { task, finish } = slowTask();
        const done = task.run();
        vi.advanceTimersByTime(499);
        expect(task.slow.value).toBe(false);
        vi.advanceTimersByTime(1);
        expect(task.slow.value).toBe(true);
        finish(1);
        await done;
        expect([task.slow.value, task.running.value]).toEqual([false, false]);
    });

    it('is not started twice', async () => {
        const { task, work, finish } = slowTask();
        const first = task.run();
        expect(await task.run()).toBeNull();
        finish(7);
        expect(await first).toEqual({ kind: 'done', value: 7 });
        expect(work).toHaveBeenCalledTimes(1);
    });
});
