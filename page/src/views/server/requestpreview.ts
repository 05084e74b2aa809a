import type { NamedValues, ServerRequest } from '@/client';

/** Interface functions that the library knows by name; any other name can be tried as well. */
export const knownFunctions = [
    'OpenDocumentFromServer',
    'SaveDocumentToServer',
    'saveURL',
    'saveURL_FormData',
    'saveURL_s_FormData',
    'saveURL_GetData_FormData',
    'saveURL_CustomParam_FormData',
] as const;

const formFunctions: readonly string[] = knownFunctions.filter(
    (name) => name.endsWith('_FormData') || name === 'SaveDocumentToServer',
);

type RequestKind = 'get' | 'post' | 'multipart';

/** The kind of request that the library sends for a function, by its name alone. */
export function requestKind(functionName: string): RequestKind {
    const saves = functionName.includes('saveURL') || functionName.includes('SaveDocumentToServer');
    if (!saves) return 'get';
    return formFunctions.includes(functionName) ? 'multipart' : 'post';
}

const payload = 'test Data';
const payloadSum = '1344763764e0e45f3f68c8c76ce06e79';
const boundary = '---------------------------1456992029567962774924545351';

/** Later headers replace earlier ones of the same name, whatever its case. */
function setHeader(headers: NamedValues, name: string, value: string): void {
    const known = headers.findIndex((header) => header.name.toLowerCase() === name.toLowerCase());
    if (known >= 0) headers.splice(known, 1);
    headers.push({ name, value });
}

/** Fields by name, the last value of a name, in the order of code units. */
export function formFields(fields: NamedValues): NamedValues {
    const byName = new Map(fields.map(({ name, value }) => [name, value]));
    if (!byName.has('fileName')) byName.set('fileName', 'test.txt');
    return [...byName]
        .map(([name, value]) => ({ name, value }))
        .sort((first, second) => (first.name < second.name ? -1 : 1));
}

function multipartBody(fields: NamedValues): string {
    const all = formFields(fields);
    const fileName = all.find(({ name }) => name === 'fileName')?.value ?? '';
    const parts = all.map(
        ({ name, value }) =>
            `--${boundary}\r\nContent-Disposition: form-data; name="${name}"\r\n\r\n${value}\r\n`,
    );
    parts.push(
        `--${boundary}\r\n` +
            `Content-Disposition: form-data; name="file"; filename="${fileName}"\r\n` +
            `Content-Type: application/octet-stream\r\n\r\n${payload}\r\n`,
    );
    return `${parts.join('')}--${boundary}--\r\n`;
}

export interface RequestPreview {
    method: 'GET' | 'POST';
    url: string;
    headers: NamedValues;
    body: string;
}

/** The request as the library will send it, without the headers that the network adds. */
export function requestPreview(request: ServerRequest): RequestPreview {
    const kind = requestKind(request.functionName);
    const headers: NamedValues = [];
    if (kind === 'post') {
        setHeader(headers, 'Content-Type', 'application/octet-stream');
        setHeader(headers, 'filename', 'test.txt');
    }
    if (kind !== 'get') setHeader(headers, 'md5sum', payloadSum);
    for (const { name, value } of request.headers) setHeader(headers, name, value);
    let body = kind === 'post' ? payload : '';
    if (kind === 'multipart') {
        body = multipartBody(request.fields);
        setHeader(headers, 'Content-Type', `multipart/form-data; boundary=${boundary}`);
        setHeader(headers, 'Content-Length', String(new TextEncoder().encode(body).length));
    }
    return { method: kind === 'get' ? 'GET' : 'POST', url: request.url, headers, body };
}

export function previewText({ method, url, headers, body }: RequestPreview): string {
    const head = [`${method} ${url}`, ...headers.map(({ name, value }) => `${name}: ${value}`)];
    return body ? `${head.join('\n')}\n\n${body.replace(/\r\n/g, '\n')}` : head.join('\n');
}
