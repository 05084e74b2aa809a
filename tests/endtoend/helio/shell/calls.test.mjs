import { expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();

async function startPage(args) {
    const program = await shared.start(args);
    return program.page();
}

test('the host is there before the first script of the page, and waits for its calls', async () => {
    const page = await startPage();
    expect(await page.evaluate('helioAtStart')).toEqual([
        'call',
        'theme',
        'language',
        'operations',
    ]);
    expect(await page.evaluate('early')).toEqual({ result: { page: '' } });
});

test('the host says theme and language', async () => {
    const page = await startPage(['--theme', 'dark', '--language', 'zh_CN']);
    expect(await page.evaluate('helio.theme')).toBe('dark');
    expect(await page.evaluate('helio.language')).toBe('zh_CN');
    await page.evaluate('helio.theme = "light"');
    expect(await page.evaluate('helio.theme')).toBe('dark');
});

test('without options theme and language are those of the desktop', async () => {
    const program = await shared.start([], { env: { LANG: 'de_DE.UTF-8' } });
    const page = await program.page();
    expect(await page.evaluate('helio.theme')).toBe('light');
    expect(await page.evaluate('helio.language')).toBe('de_DE');
});

test('a command without a result is answered with an empty envelope', async () => {
    const page = await startPage();
    expect(await page.call('mouseRelease')).toEqual({});
    expect(await page.call('feedbacktovyr', { infopage: 'x' })).toEqual({});
});

test.each([
    ['text', 'plain', 'plain'],
    ['an empty text', '', ''],
    ['text beyond the basic plane', '中文 😀 "\\\n\u2028', '中文 😀 "\\\n\u2028'],
    ['text with a zero', 'a\0b', 'a\0b'],
    ['a lone surrogate', 'a\ud800b', 'a?b'],
    ['a whole number', 42, '42'],
    ['a number with a fraction', -1.5, '-1.5'],
    ['a truth value', true, 'true'],
    ['null', null, ''],
    ['a list', ['a', 1], ''],
    ['an object', { a: 1 }, ''],
    ['three million characters', '界'.repeat(3_000_000), '界'.repeat(3_000_000)],
])('an argument may be %s', async (_, value, text) => {
    const page = await startPage();
    await page.call('feedbacktovyr', { infopage: value });
    const { result } = await page.call('getcollectionpage');
    if (text.length < 100) expect(result.page).toBe(text);
    expect(result.page === text).toBe(true);
});

test('many calls at once are all answered, each with its own answer', async () => {
    const page = await startPage();
    const answers = await page.evaluate(`Promise.all(Array.from({ length: 300 }, async (_, n) => {
        helio.call('feedbacktovyr', { infopage: String(n) });
        return (await helio.call('getcollectionpage')).result.page;
    }))`);
    expect(answers).toEqual(Array.from({ length: 300 }, (_, n) => String(n)));
});

test.each([
    ['an unknown command', "helio.call('nothing')", /unknown command: nothing/],
    ['an inherited slot', "helio.call('deleteLater')", /unknown command: deleteLater/],
    ['a slot that is not a command', "helio.call('onsearchfinished')", /unknown command/],
    ['another case', "helio.call('GetCollectionPage')", /unknown command/],
    ['no command', 'helio.call()', /needs the text "command"/],
    ['a command that is not text', 'helio.call({})', /needs the text "command"/],
    ['arguments that are not an object', "helio.call('router', 'x')", /"args" is not an object/],
    ['arguments without end', 'const a = {}; a.a = a; helio.call("router", a)', /circular/],
])('%s is refused with a message', async (_, expression, message) => {
    const page = await startPage();
    await expect(page.evaluate(expression)).rejects.toThrow(message);
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
});

test('the wire survives what no page would send', async () => {
    const page = await startPage();
    // A second channel takes the transport away from window.helio.
    const report = await page.evaluate(`new Promise((resolve) => {
        new QWebChannel(qt.webChannelTransport, (channel) => {
            const { wire } = channel.objects;
            const errors = [];
            wire.callbackToJS.connect((callback, json) => {
                if (callback === 'helioErrorCallBack')
                    errors.push(JSON.parse(json).error);
                else
                    resolve({ objects: Object.keys(channel.objects), errors, last: callback,
                        hidden: ['deliver', 'setApi', 'pass'].filter((name) => name in wire) });
            });
            for (const call of ['', '{', '[]', 'null', '\\0', '{"command":1}'])
                wire.fromJSAsynCall(call);
            for (const call of ['{', 5, null, {}, []])
                wire.jsAsynCall = call;
            wire.fromJSAsynCallBase64('no base64 !');
            channel.exec({ type: 6, object: 'wire', method: 'deleteLater', args: [] });
            wire.fromJSAsynCallBase64(btoa('{"command":"mouseRelease","callback":"done"}'));
        });
    })`);
    expect(report.objects).toEqual(['wire']);
    expect(report.hidden).toEqual([]);
    expect(report.errors.length).toBe(12);
    expect(report.last).toBe('done');
});

test('a later answer reaches only a function of the page itself', async () => {
    const page = await startPage();
    await page.evaluate('delete window.hiddentipCallBack, Object.prototype.hiddentipCallBack = 1');
    await page.call('router', { page: 'child.html' });
    expect(await page.call('getcollectionpage')).toEqual({ result: { page: '' } });
});
