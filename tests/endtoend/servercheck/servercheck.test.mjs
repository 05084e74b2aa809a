import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { DocumentServer } from './documentserver.mjs';

const plainServer = 'http://127.0.0.1:8080';
const tlsServer = 'https://127.0.0.1:8443';
const boundary = '---------------------------1456992029567962774924545351';
const digest = '1344763764e0e45f3f68c8c76ce06e79';
const open = 'OpenDocumentFromServer';
const saves = ['saveURL', 'saveURL_FormData'];
const file = {
    name: 'file',
    filename: 'test.txt',
    mimeType: 'application/octet-stream',
    content: 'test Data',
};

let root;
let server;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    server = await DocumentServer.create(root);
});

afterEach(async () => root.dispose());

async function onlyRequest() {
    const requests = await server.requests();
    expect(requests).toHaveLength(1);
    return requests[0];
}

const field = (name, value) =>
    `--${boundary}\r\nContent-Disposition: form-data; name="${name}"\r\n\r\n${value}\r\n`;
const filePart = (name) =>
    `--${boundary}\r\n` +
    `Content-Disposition: form-data; name="file"; filename="${name}"\r\n` +
    `Content-Type: application/octet-stream\r\n\r\ntest Data\r\n--${boundary}--\r\n`;

test('OpenDocumentFromServer sends a GET without body and digest', async () => {
    const url = `${plainServer}/upload?name=%E6%97%A5`;
    expect(await server.test({ urlpath: url, funcname: open, reqtable: 'a:1' })).toBe('success');
    const request = await onlyRequest();
    expect(request.method).toBe('GET');
    expect(request.url).toBe('/upload?name=%E6%97%A5');
    expect(request.body).toBe('');
    for (const name of ['md5sum', 'filename', 'content-type', 'content-length', 'cookie']) {
        expect(request.headers).not.toHaveProperty(name);
    }
});

test('saveURL sends a plain POST with file name and digest', async () => {
    expect(
        await server.test({
            urlpath: `${plainServer}/upload`,
            funcname: 'saveURL',
            reqtable: 'a:1',
        }),
    ).toBe('success');
    const request = await onlyRequest();
    expect(request.method).toBe('POST');
    expect(request.body).toBe('test Data');
    expect(request.headers).toMatchObject({
        'content-type': 'application/octet-stream',
        'content-length': '9',
        filename: 'test.txt',
        md5sum: digest,
    });
});

test.each([
    'saveURL_FormData',
    'saveURL_s_FormData',
    'saveURL_GetData_FormData',
    'saveURL_CustomParam_FormData',
    'SaveDocumentToServer',
])('%s sends form data that a multipart parser reads', async (funcname) => {
    expect(await server.test({ urlpath: `${plainServer}/upload`, funcname })).toBe('success');
    const request = await onlyRequest();
    expect(request.headers.md5sum).toBe(digest);
    expect(request.headers['content-type']).toBe(`multipart/form-data; boundary=${boundary}`);
    expect(request.headers['content-length']).toBe(`${Buffer.byteLength(request.body)}`);
    expect(request.body).toBe(field('fileName', 'test.txt') + filePart('test.txt'));
    expect(request.parts).toEqual([{ name: 'fileName', value: 'test.txt' }, file]);
});

test('fields are sent in ascending order and what is not a field not at all', async () => {
    const send = (reqtable) =>
        server.test({ urlpath: `${plainServer}/upload`, funcname: 'saveURL_FormData', reqtable });
    expect(await send('b:2;a:1;bad;x:y:z')).toBe('success');
    expect(await send('a:2;Z:1')).toBe('success');
    const [first, second] = (await server.requests()).map(({ parts }) => parts);
    const fileName = { name: 'fileName', value: 'test.txt' };
    expect(first).toEqual([{ name: 'a', value: '1' }, { name: 'b', value: '2' }, fileName, file]);
    expect(second).toEqual([{ name: 'Z', value: '1' }, { name: 'a', value: '2' }, fileName, file]);
});

test('the file has the name that the user gives', async () => {
    const args = {
        urlpath: `${plainServer}/upload`,
        funcname: 'SaveDocumentToServer',
        reqtable: 'fileName:报告 1.docx;作者:Ä',
    };
    expect(await server.test(args)).toBe('success');
    const { body } = await onlyRequest();
    expect(body).toBe(
        field('fileName', '报告 1.docx') + field('作者', 'Ä') + filePart('报告 1.docx'),
    );
});

test('the user’s headers are sent, and replace the standard ones of a plain POST', async () => {
    const reqheader = 'X-One:1;MD5SUM:mine;filename:other;bad;x:y:z;Content-Type:text/plain';
    expect(
        await server.test({ urlpath: `${plainServer}/upload`, funcname: 'saveURL', reqheader }),
    ).toBe('success');
    const { headers } = await onlyRequest();
    expect(headers).toMatchObject({
        'x-one': '1',
        md5sum: 'mine',
        filename: 'other',
        'content-type': 'text/plain',
    });
    expect(headers).not.toHaveProperty('x');
});

test('the user cannot set type and length of form data', async () => {
    const reqheader = 'content-type:text/plain;Content-Length:1;md5sum:mine';
    const args = { urlpath: `${plainServer}/upload`, funcname: 'saveURL_FormData', reqheader };
    expect(await server.test(args)).toBe('success');
    const { headers, parts } = await onlyRequest();
    expect(headers.md5sum).toBe('mine');
    expect(parts).toHaveLength(2);
});

test('a server with an unknown certificate is still asked', async () => {
    const check = await server.run([
        'openssl',
        's_client',
        '-verify_return_error',
        '-connect',
        '127.0.0.1:8443',
    ]);
    expect(check.status).not.toBe(0);
    expect(check.stderr).toMatch(/self-signed certificate/);
    for (const funcname of [open, ...saves]) {
        expect(await server.test({ urlpath: `${tlsServer}/upload`, funcname })).toBe('success');
    }
    const capitals = tlsServer.replace('https', 'HTTPS');
    expect(await server.test({ urlpath: `${capitals}/upload`, funcname: open })).toBe('success');
    expect(await server.requests()).toHaveLength(4);
});

test('a server that speaks no TLS is a failure without status', async () => {
    const urlpath = 'https://127.0.0.1:8080/upload';
    expect(await server.test({ urlpath, funcname: open })).toBe('0:');
});

test.each(['found', 'permanent', 'see-other', 'temporary', 'to-tls'])(
    'the redirect "%s" is followed with the whole request',
    async (path) => {
        for (const funcname of [open, ...saves]) {
            const args = { urlpath: `${plainServer}/${path}`, funcname, reqheader: 'X-One:1' };
            expect(await server.test(args)).toBe('success');
        }
        const [get, plain, form] = await server.requests();
        expect(get.method).toBe('GET');
        expect(plain).toMatchObject({ method: 'POST', body: 'test Data' });
        expect(form.parts).toEqual([{ name: 'fileName', value: 'test.txt' }, file]);
        for (const { headers } of [get, plain, form]) expect(headers['x-one']).toBe('1');
    },
);

test('the answer after the redirect decides', async () => {
    const args = { urlpath: `${plainServer}/to-missing`, funcname: open };
    expect(await server.test(args)).toMatch(/^404:/);
});

test('a redirect to an invalid address is neither followed nor a failure', async () => {
    expect(await server.test({ urlpath: `${plainServer}/invalid`, funcname: open })).toBe(
        'success',
    );
    expect(await server.requests()).toEqual([]);
});

test('a redirect without a full address is not followed', async () => {
    expect(await server.test({ urlpath: `${plainServer}/relative`, funcname: open })).toBe('0:');
    expect(await server.requests()).toEqual([]);
});

test('a redirect loop ends', async () => {
    const args = { urlpath: `${plainServer}/circle`, funcname: 'saveURL_FormData' };
    expect(await server.test(args)).toMatch(/^302:<html>/);
});

test('a GET keeps no cookies', async () => {
    for (const funcname of [open, 'saveURL']) {
        expect(await server.test({ urlpath: `${plainServer}/cookie`, funcname })).toBe('success');
    }
    const [get, post] = await server.requests();
    expect(get.headers).not.toHaveProperty('cookie');
    expect(post.headers.cookie).toBe('session=1');
});

test('an error is told with its status and page', async () => {
    for (const funcname of [open, ...saves]) {
        expect(await server.test({ urlpath: `${plainServer}/missing`, funcname })).toMatch(
            /^404:<html>.*404 Not Found.*nginx/s,
        );
        expect(await server.test({ urlpath: `${plainServer}/broken`, funcname })).toBe(
            '500:kaputt: ü',
        );
    }
    const { status, answer } = await server.testRaw({
        urlpath: `${plainServer}/broken`,
        funcname: open,
    });
    expect(answer.result).toBe(Buffer.from('500:kaputt: ü').toString('base64'));
    expect(status).toBe(0);
});

test('a dropped connection has no status; one cut off in the middle keeps its data', async () => {
    for (const funcname of [open, ...saves]) {
        expect(await server.test({ urlpath: `${plainServer}/drop`, funcname })).toBe('0:');
        expect(await server.test({ urlpath: `${plainServer}/cut`, funcname })).toBe('200:half');
    }
});

test.each([
    ['a port where nobody listens', 'http://127.0.0.1:9'],
    ['a host that nobody knows', 'http://nowhere.invalid/'],
    ['no scheme', '127.0.0.1/upload'],
    ['an unknown scheme', 'localhost:8080/upload'],
    ['an address that is none', 'http://[::'],
])('an address with %s has no status', async (_, urlpath) => {
    expect(await server.test({ urlpath, funcname: open })).toBe('0:');
    expect(await server.test({ urlpath, funcname: 'saveURL_FormData' })).toBe('0:');
});

test.each([
    ['address', { funcname: open }],
    ['function', { urlpath: `${plainServer}/upload` }],
    ['address', { urlpath: '', funcname: open }],
    ['function', { urlpath: `${plainServer}/upload`, funcname: '' }],
])('without %s no request is made', async (_, args) => {
    const end = await server.testRaw(args);
    expect(end.answer.result).toBe('parame error');
    expect(end.status).toBe(1);
    expect(await server.requests()).toEqual([]);
});

test('the name of the function is compared with its case', async () => {
    const names = ['saveurl', 'SAVEURL_FormData', 'saveURL_formdata', 'my saveURL'];
    for (const funcname of names) {
        expect(await server.test({ urlpath: `${plainServer}/upload`, funcname })).toBe('success');
    }
    const requests = await server.requests();
    expect(requests.map(({ method }) => method)).toEqual(['GET', 'GET', 'POST', 'POST']);
    expect(requests.map(({ parts }) => parts)).toEqual([null, null, null, null]);
});

test('waiting for a slow answer does not spin', async () => {
    const args = `openremoveurlcheck urlpath=${plainServer}/slow funcname=saveURL`;
    const script = `TIMEFORMAT='%U %S %R'; time /suite/office/assistantctl ${args}`;
    const end = await server.run(['bash', '-c', script]);
    expect(JSON.parse(end.stdout).result).toBe('success');
    const [user, system, real] = end.stderr.trim().split('\n').at(-1).split(' ').map(Number);
    expect(real).toBeGreaterThan(3);
    expect(user + system).toBeLessThan(real / 2);
});

test('without any network a test fails at once', async () => {
    const end = await runCommand(root, 'openremoveurlcheck', {
        urlpath: 'http://192.0.2.1/',
        funcname: open,
    });
    expect(Buffer.from(end.answer.result, 'base64').toString()).toBe('0:');
});
