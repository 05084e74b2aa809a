import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../../sandboxroot.mjs';
import { runScript } from './scriptrunner.mjs';

const suite = '/opt/orvane/office 6';
const documentPath = '/home/user/a.docx';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create();
    await root.writeFile(documentPath, 'x');
    await root.recordingFake('vyr', { output: 'suite\n', status: 7 });
    await root.writeFile(`${suite}/vyr`, '#!/bin/bash\nexec /fakes/vyr "$@"\n', { mode: 0o755 });
});

afterEach(async () => root.dispose());

const extract = (...args) => runScript(root, 'extractfont.sh', args);

test('runs the suite with -savemissfont and ends with its status', async () => {
    const end = await extract(suite, 'vyr', documentPath);
    expect(end).toMatchObject({ status: 7, stdout: `${documentPath}\n${suite}\nsuite\n` });
    expect(await root.callsOf('vyr')).toEqual([['-savemissfont', documentPath]]);
});

test.each([['/home/user/gone.docx'], ['/home/user']])(
    'a document that is not a regular file ends it with 1: %s',
    async (document) => {
        const end = await extract(suite, 'vyr', document);
        expect(end).toMatchObject({ status: 1, stdout: '' });
        expect(await root.callsOf('vyr')).toEqual([]);
    },
);

test('a missing suite folder ends it with 1 after the document was printed', async () => {
    const end = await extract('/opt/orvane/none', 'vyr', documentPath);
    expect(end).toMatchObject({ status: 1, stdout: `${documentPath}\n` });
});

test('a missing program of the suite gives the shell’s status', async () => {
    expect((await extract(suite, 'tbl', documentPath)).status).toBe(127);
});

test('a document with blanks is not checked, and reaches the suite as one argument', async () => {
    const end = await extract(suite, 'vyr', '/home/user/no such.docx');
    expect(end.status).toBe(7);
    expect(await root.callsOf('vyr')).toEqual([['-savemissfont', '/home/user/no such.docx']]);
});

test('pattern characters in a document belong to its name', async () => {
    expect((await extract(suite, 'vyr', '/home/user/*.docx')).status).toBe(1);
});

test.each([
    '/home/user/a.docx -o -v a[$(touch${IFS}/tmp/ran)] -o .docx',
    '$(touch${IFS}/tmp/ran).docx',
    '; touch /tmp/ran; .docx',
])('nothing in a document’s name is run: %s', async (document) => {
    await extract(suite, 'vyr', document);
    expect(await root.exists('/tmp/ran')).toBe(false);
});
