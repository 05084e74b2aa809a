import { afterEach, beforeEach, expect, test } from 'vitest';

import { SandboxRoot } from '../sandboxroot.mjs';

const tool = '/suite/office/eptools';
const folder = '/home/user/Documents';
const patience = 120_000;

/** Documents whose names run over formatting, each with a member that must stay as it is. */
const makeDocuments = `
import io, os, zipfile
folder = '${folder}'
os.makedirs(folder + '/old', exist_ok=True)
OFFICE = 'urn:oasis:names:tc:opendocument:xmlns:office:1.0'
TEXT = 'urn:oasis:names:tc:opendocument:xmlns:text:1.0'

def odt(path, body):
    with zipfile.ZipFile(path, 'w') as z:
        z.writestr('mimetype', 'application/vnd.oasis.opendocument.text')
        z.writestr('Pictures/noise.bin', bytes(range(256)) * 40, zipfile.ZIP_DEFLATED)
        z.writestr('content.xml', f'<office:document-content xmlns:office="{OFFICE}" xmlns:text="{TEXT}" office:version="1.2"><office:body><office:text>{body}</office:text></office:body></office:document-content>', zipfile.ZIP_DEFLATED)
        z.writestr('META-INF/manifest.xml', '<manifest:manifest xmlns:manifest="urn:oasis:names:tc:opendocument:xmlns:manifest:1.0" manifest:version="1.2"><manifest:file-entry manifest:full-path="/" manifest:media-type="application/vnd.oasis.opendocument.text"/><manifest:file-entry manifest:full-path="content.xml" manifest:media-type="text/xml"/><manifest:file-entry manifest:full-path="Pictures/noise.bin" manifest:media-type=""/></manifest:manifest>')

odt(folder + '/letter.odt', '<text:p>Dear Old <text:span>Co</text:span>mpany, hello.</text:p>')
odt(folder + '/old/other.odt', '<text:p>Nothing to see.</text:p>')
import docx
d = docx.Document()
p = d.add_paragraph('To the ')
p.add_run('Old ').bold = True
p.add_run('Company')
p.add_run(' of 1999')
d.save(folder + '/contract.docx')
`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
    await root.makeDirectory(folder);
});

afterEach(async () => root.dispose());

const python = (script) => root.run(['python3', '-c', script], { timeoutMs: patience });
const replace = (...words) => root.run([tool, '-replacefile', ...words], { timeoutMs: patience });
const bytesOf = async (name) => (await root.readFile(`${folder}/${name}`, null)).toString('latin1');

/** Every member as the archive has it: name, method, place in the order, and packed bytes. */
const members = async (name) => {
    const end = await python(`
import hashlib, json, zipfile
path = '${folder}/${name}'
data = open(path, 'rb').read()
z = zipfile.ZipFile(path)
assert z.testzip() is None
rows = []
for i in z.infolist():
    begin = i.header_offset
    rows.append([i.filename, i.compress_type, i.date_time, hashlib.sha256(z.read(i)).hexdigest(), len(z.read(i))])
print(json.dumps(rows))`);
    return JSON.parse(end.stdout);
};

test('text that runs over formatting is replaced, and LibreOffice reads the documents', async () => {
    expect(await python(makeDocuments)).toMatchObject({ status: 0 });
    const before = { odt: await bytesOf('letter.odt'), docx: await bytesOf('contract.docx') };
    const membersBefore = [await members('letter.odt'), await members('contract.docx')];

    const preview = await replace('Old Company', folder);
    expect(preview).toMatchObject({ status: 0, stderr: '' });
    expect(preview.stdout.split('\n')).toEqual([
        `${folder}/contract.docx: To the [Old Company] of 1999`,
        `${folder}/letter.odt: Dear [Old Company], hello.`,
        'Hits: 2, in documents: 2.',
        '',
    ]);
    expect(await bytesOf('letter.odt')).toBe(before.odt);

    const done = await replace('--replace', 'New & Sons', 'Old Company', folder);
    expect(done).toMatchObject({ status: 0, stderr: '' });
    expect(done.stdout).toMatch(/All were replaced\. To undo: eptools -replacefile --undo 1\n$/);
    expect((await bytesOf('letter.odt')).slice(30, 38 + 39)).toBe(
        'mimetypeapplication/vnd.oasis.opendocument.text',
    );
    const changed = ['content.xml', 'word/document.xml'];
    const membersAfter = [await members('letter.odt'), await members('contract.docx')];
    for (const n of [0, 1]) {
        expect(membersAfter[n].map((row) => row[0])).toEqual(membersBefore[n].map((row) => row[0]));
        const others = (rows) => rows.filter(([name]) => !changed.includes(name));
        expect(others(membersAfter[n])).toEqual(others(membersBefore[n]));
    }

    await root.run(
        ['soffice', '--headless', '--convert-to', 'txt:Text', '--outdir', '/tmp/read'].concat([
            `${folder}/letter.odt`,
            `${folder}/contract.docx`,
        ]),
        { timeoutMs: patience },
    );
    expect(await root.readFile('/tmp/read/letter.txt')).toContain('Dear New & Sons, hello.');
    expect(await root.readFile('/tmp/read/contract.txt')).toContain('To the New & Sons of 1999');

    expect(await replace('--undo')).toMatchObject({
        status: 0,
        stdout: 'Replacement 1 was undone.\n',
    });
    expect(await bytesOf('letter.odt')).toBe(before.odt);
    expect(await bytesOf('contract.docx')).toBe(before.docx);
    expect(await replace('--undo')).toMatchObject({ status: 1, stdout: '' });
});

test('what cannot be changed safely is left out, each with its reason', async () => {
    expect(
        await python(`${makeDocuments}
def copy(name, change):
    with zipfile.ZipFile(folder + '/letter.odt') as a, zipfile.ZipFile(folder + '/' + name, 'w', zipfile.ZIP_DEFLATED) as z:
        for i in a.infolist():
            z.writestr(i, change(i.filename, a.read(i)))
        return z
data = open(folder + '/letter.odt', 'rb').read()
open(folder + '/cut.odt', 'wb').write(data[:-80])
open(folder + '/text.odt', 'wb').write(b'Old Company')
open(folder + '/old.xls', 'wb').write(bytes.fromhex('d0cf11e0a1b11ae1') + b'Old Company')
open(folder + '/secret.docx', 'wb').write(bytes.fromhex('d0cf11e0a1b11ae1') + 'EncryptedPackage'.encode('utf-16-le'))
open(folder + '/locked.odt', 'wb').write(data)
open(folder + '/.~lock.locked.odt#', 'w').write(',user,host,,;')
copy('xml.odt', lambda n, c: c[:-5] if n == 'content.xml' else c)
copy('secret.odt', lambda n, c: c.replace(b'</manifest:manifest>', b'<manifest:encryption-data/></manifest:manifest>') if n.startswith('META') else c)
copy('bomb.odt', lambda n, c: b'<a>' + bytes(80 << 20) if n == 'content.xml' else c)
copy('signed.odt', lambda n, c: c)
with zipfile.ZipFile(folder + '/signed.odt', 'a') as z: z.writestr('META-INF/documentsignatures.xml', '<a/>')
`),
    ).toMatchObject({ status: 0, stderr: '' });
    const end = await replace('--replace', 'X', 'Old Company', folder);
    expect(end.status).toBe(1);
    const reasons = Object.fromEntries(
        end.stderr
            .trim()
            .split('\n')
            .map((line) => line.slice(folder.length + 1).split(': ', 2)),
    );
    expect(reasons).toEqual({
        'bomb.odt': 'a part of it is damaged or too big',
        'cut.odt': 'it is damaged',
        'locked.odt': 'it is open in another program',
        'old.xls':
            'it is in an older binary format; save it in a newer one first, such as OpenDocument',
        'secret.docx': 'it is protected with a password',
        'secret.odt': 'it is protected with a password',
        'signed.odt': 'it is signed, and a change would break the signature',
        'text.odt': 'it is neither an OpenDocument nor an Office Open XML document',
        'xml.odt': 'it is damaged',
    });
    expect(end.stdout).toContain('Hits: 2, in documents: 2.');
    expect(await bytesOf('locked.odt')).toContain('content.xml');
});

test('a document that changes between search and undo is not overwritten', async () => {
    expect(await python(makeDocuments)).toMatchObject({ status: 0 });
    expect(await replace('--replace', 'X', 'Dear', folder)).toMatchObject({ status: 0 });
    const later = `${await bytesOf('letter.odt')}later`;
    await root.writeFile(`${folder}/letter.odt`, Buffer.from(later, 'latin1'));
    const undone = await replace('--undo', '1');
    expect(undone.status).toBe(1);
    expect(undone.stderr).toContain('Nothing was changed');
    expect(await bytesOf('letter.odt')).toBe(later);
});

test('other words are refused', async () => {
    for (const words of [[], ['one'], ['', folder], ['--undo', 'x'], ['--undo', '1', '2']]) {
        expect(await replace(...words)).toMatchObject({ status: 2, stdout: '' });
    }
});
