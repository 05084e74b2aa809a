import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { describe, expect, it } from 'vitest';
import { meaningOf, shownBody } from '@/views/server/answertext';
import { curlCommand } from '@/views/server/curlcommand';
import {
    formFields,
    previewText,
    requestKind,
    requestPreview,
} from '@/views/server/requestpreview';
import { namedValues, rowObjection } from '@/views/server/requestrows';
import { timeParts } from '@/views/server/timing';

const row = (name: string, value: string) => ({ id: 1, name, value });
const request = {
    url: 'http://h/x',
    functionName: 'OpenDocumentFromServer',
    headers: [{ name: 'X-One', value: '1' }],
    fields: [],
};

describe('a row', () => {
    it.each([
        [row('a', 'b'), null],
        [row('', ''), null],
        [row('a', ''), null],
        [row('a:b', ''), 'separator'],
        [row('a', 'http://h'), 'separator'],
        [row('a', 'b;c'), 'separator'],
        [row(' ', 'b'), 'noName'],
    ])('%j meets %s', (given, objection) => {
        expect(rowObjection(given)).toBe(objection);
    });

    it('that was left empty is not sent', () => {
        expect(namedValues([row(' ', ''), row(' a ', ' b '), row('c', '')])).toEqual([
            { name: 'a', value: ' b ' },
            { name: 'c', value: '' },
        ]);
    });
});

describe('the kind of a request', () => {
    it.each([
        ['OpenDocumentFromServer', 'get'],
        ['openURL', 'get'],
        ['saveurl', 'get'],
        ['saveURL', 'post'],
        ['saveURL_s', 'post'],
        ['mysaveURL_FormData', 'post'],
        ['SaveDocumentToServer', 'multipart'],
        ['MySaveDocumentToServer', 'post'],
        ['saveURL_FormData', 'multipart'],
        ['saveURL_s_FormData', 'multipart'],
        ['saveURL_GetData_FormData', 'multipart'],
        ['saveURL_CustomParam_FormData', 'multipart'],
    ])('of %s is %s', (name, kind) => {
        expect(requestKind(name)).toBe(kind);
    });
});

describe('the preview', () => {
    it('of a GET has the given headers and nothing else', () => {
        expect(previewText(requestPreview(request))).toBe('GET http://h/x\nX-One: 1');
    });

    it('of a plain POST lets given headers replace the fixed ones', () => {
        const { headers, body } = requestPreview({
            ...request,
            functionName: 'saveURL',
            headers: [{ name: 'FileName', value: 'a.txt' }],
        });
        expect(body).toBe('test Data');
        expect(headers).toEqual([
            { name: 'Content-Type', value: 'application/octet-stream' },
            { name: 'md5sum', value: createHash('md5').update('test Data').digest('hex') },
            { name: 'FileName', value: 'a.txt' },
        ]);
    });

    it('of a form has the fields in order of code units and the file last', () => {
        const { headers, body } = requestPreview({
            ...request,
            functionName: 'saveURL_FormData',
            headers: [{ name: 'content-type', value: 'text/plain' }],
            fields: [
                { name: 'a', value: 'x' },
                { name: 'Z', value: '文' },
                { name: 'a', value: 'y' },
            ],
        });
        expect(headers.map(({ name }) => name)).toEqual([
            'md5sum',
            'Content-Type',
            'Content-Length',
        ]);
        expect(headers[1]!.value).toContain('boundary=-----');
        expect(headers[2]!.value).toBe(String(Buffer.byteLength(body)));
        expect([...body.matchAll(/name="(\w+)"/g)].map((match) => match[1])).toEqual([
            'Z',
            'a',
            'fileName',
            'file',
        ]);
        expect(body).toContain('name="a"\r\n\r\ny\r\n');
        expect(body).toContain('filename="test.txt"');
        expect(body.endsWith('--\r\n')).toBe(true);
    });

    it('keeps a given file name', () => {
        expect(formFields([{ name: 'fileName', value: 'a.docx' }])).toEqual([
            { name: 'fileName', value: 'a.docx' },
        ]);
    });
});

describe('an answer', () => {
    it.each([
        [0, 'silent'],
        [200, 'odd'],
        [302, 'redirect'],
        [401, 'access'],
        [403, 'access'],
        [404, 'notFound'],
        [418, 'client'],
        [503, 'server'],
        [999, 'odd'],
    ])('of status %i means %s', (status, meaning) => {
        expect(meaningOf({ good: false, status, body: '' })).toBe(meaning);
    });

    it('without an error is good', () => {
        expect(meaningOf({ good: true })).toBe('good');
    });

    it('is shown from its start when its body is long', () => {
        expect(shownBody('a\r\nb\nc')).toEqual({ lines: ['a', 'b', 'c'], cut: false });
        const long = shownBody('x'.repeat(30_000));
        expect([long.lines.length, long.lines[0]!.length, long.cut]).toEqual([1, 20_000, true]);
    });
});

describe('the command for a terminal', () => {
    it('is one that a shell takes apart as it was meant', () => {
        const preview = {
            method: 'POST' as const,
            url: 'https://h/a b?c=$(touch x)',
            headers: [{ name: 'X-Odd', value: `it's "so" \\n` }],
            body: "one\r\n'two'\tthree\\",
        };
        const command = curlCommand(preview).replace(/^curl /, "printf '%s\\0' ");
        const words = execFileSync('bash', ['-c', command]).toString().split('\0').slice(0, -1);
        expect(words).toEqual([
            '--location',
            '--insecure',
            '--include',
            '--header',
            `X-Odd: it's "so" \\n`,
            '--data-binary',
            preview.body,
            preview.url,
        ]);
    });
});

describe('the time of an answer', () => {
    it('is split into the steps that were needed', () => {
        const times = { name: 2, connect: 5, encrypt: 0, firstByte: 25, whole: 40 };
        expect(timeParts({ times })).toEqual([
            { step: 'name', start: 0, length: 2 },
            { step: 'connect', start: 2, length: 3 },
            { step: 'firstByte', start: 5, length: 20 },
            { step: 'whole', start: 25, length: 15 },
        ]);
    });
});
