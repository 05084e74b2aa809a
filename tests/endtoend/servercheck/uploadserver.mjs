// Accepts uploads as a document server would, and records each request before it answers.
import { appendFileSync } from 'node:fs';
import http from 'node:http';
import { setTimeout as pause } from 'node:timers/promises';

import busboy from 'busboy';

const recordFile = '/tmp/server/requests';
const slowMs = 3000;

async function bodyOf(request) {
    const chunks = [];
    for await (const chunk of request) chunks.push(chunk);
    return Buffer.concat(chunks);
}

/** The parts of a multipart body, in their order. */
function partsOf(headers, body) {
    return new Promise((resolve, reject) => {
        const parts = [];
        const parser = busboy({ headers });
        parser.on('field', (name, value) => parts.push({ name, value }));
        parser.on('file', (name, stream, { filename, mimeType }) => {
            const part = { name, filename, mimeType, content: '' };
            parts.push(part);
            stream.setEncoding('latin1').on('data', (text) => {
                part.content += text;
            });
        });
        parser.on('close', () => resolve(parts));
        parser.on('error', reject);
        parser.end(body);
    });
}

async function take(request, response) {
    const body = await bodyOf(request);
    const { method, url, headers } = request;
    const isForm = headers['content-type']?.startsWith('multipart/form-data');
    const parts = isForm ? await partsOf(headers, body) : null;
    const record = { method, url, headers, body: body.toString('base64'), parts };
    appendFileSync(recordFile, `${JSON.stringify(record)}\n`);
    if (url === '/slow') await pause(slowMs);
    if (url === '/cut') {
        response.writeHead(200, { 'Content-Length': 1000 });
        response.write('half', () => request.socket.destroy());
        return;
    }
    response.end('stored');
}

http.createServer((request, response) => {
    take(request, response).catch((error) => {
        response.statusCode = 400;
        response.end(`${error}`);
    });
}).listen(8081, '127.0.0.1');
