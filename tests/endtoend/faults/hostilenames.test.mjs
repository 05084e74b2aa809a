import { afterEach, beforeEach, expect, test } from 'vitest';

import { Session } from '../assistantctl.mjs';
import { base64 } from '../base64.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { workDirectory } from './faults.mjs';

/** Names that leave a file "ran" in the current directory if a shell reads them as commands. */
const names = [
    '$(touch${IFS}ran)',
    '`touch${IFS}ran`',
    '"$(touch${IFS}ran)"',
    '"`touch${IFS}ran`"',
    "'$(touch${IFS}ran)'",
    "'`touch${IFS}ran`'",
    'a";touch${IFS}ran;"',
    "a';touch${IFS}ran;'",
    "a'$(touch${IFS}ran)'b",
    "'\\''$(touch${IFS}ran)'\\''",
    '\\$(touch${IFS}ran)',
    '\\\\$(touch${IFS}ran)',
    '${x:-$(touch${IFS}ran)}',
    '$((`touch${IFS}ran`))',
    'a[$(touch${IFS}ran)]',
    '<(touch${IFS}ran)',
    '>ran',
    '1>ran',
    '>|ran',
    '&>ran',
    '{touch,ran}',
    'a;touch ran',
    ';touch ran;',
    'a|touch ran',
    'a&touch ran&',
    'a&&touch ran',
    'a||touch ran',
    'a\ntouch ran\n',
    'a\n$(touch ran)',
    'a $(touch ran)',
    'a\t`touch ran`',
    '-o ran $(touch ran)',
    '#\n(touch ran)',
];
const suffix = '.docx';
const updateSettings = '/home/user/update.cfg';

let root;
let session;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true, env: { HELIO_UPDATE_CFG: updateSettings } });
    await root.recordingFake('xdg-open');
    for (const program of ['vyrEnvCheckTool', 'vyr']) {
        await root.remove(`/suite/office/${program}`);
        await root.writeFile(`/suite/office/${program}`, '#!/bin/bash\n', { mode: 0o755 });
    }
});

afterEach(async () => root.dispose());

async function expectNothingRan() {
    expect((await session.close()).status).toBe(0);
    const found = await root.run(['find', '/home', '/tmp', '/suite', '-name', 'ran']);
    expect(found).toMatchObject({ status: 0, stdout: '', stderr: '' });
}

test('there are 33 names', () => {
    expect(new Set(names).size).toBe(33);
});

test('a name chosen in a dialog is never run', async () => {
    session = Session.start(root);
    for (const name of names) {
        const file = `/home/user/${name}`;
        const choose = (command, ...choices) => session.send({ command, choose: choices });
        await root.writeFile(file, 'x');
        await root.writeFile(`${file}${suffix}`, 'x');
        await choose('addconfigfile', file);
        await choose('exportoftenfileperm', '/home/user/listing');
        await choose('exportoftenfileperm', `${file}.often`);
        await choose('exportspecialfileperm', file, '/home/user/listing');
        await choose('exportspecialfileperm', file, `${file}.special`);
        await choose('exportsysinfo', `${file}.report`);
        await choose('chooselayouterrorfile', `${file}${suffix}`);
        await choose('openlaytouerrorfile');
        await choose('openprinterrorfile', `${file}${suffix}`);
        await choose('choosesamplefile', `${file}${suffix}`);
        await choose('chooseattachment', file);
        await choose('archivepackage', file);
    }
    await session.send({ command: 'stratextractfileinfo' });
    await expectNothingRan();
}, 180_000);

test('an argument is never run', async () => {
    await root.writeFile(updateSettings, '[update]\nchannel=beta\n');
    session = Session.start(root);
    for (const name of names) {
        const file = `/home/user/${name}`;
        await root.writeFile(`${file}${suffix}`, 'x');
        const send = (command, args, choose = []) => session.send({ command, args, choose });
        await send('comparefont', { filepath: base64(`${file}${suffix}`) });
        await send('opensearchfile', { file });
        await send('startsearchfile', { keyword: name });
        await send('startsearchfile', { keyword: '' });
        await send('router', { page: name, type: name });
        await send('closechildwindow', { type: name });
        await send('feedbacktovyr', { infopage: name });
        await send('getcollectionpage', {});
        await send('copytoclipboard', { verification: name });
        await send('vyrenvcheck', { type: name, app: name, arg: name });
        await send('changeupdateconfig', { keyvalue: `a$${name}` });
        await send('openremoveurlcheck', {
            urlpath: file,
            funcname: name,
            reqheader: `${name}:${name}`,
            reqtable: `${name}:${name}`,
        });
        await send(
            'archivepackage',
            {
                archiveType: name,
                archiveDescribe: name,
                archiveSample: `${file}${suffix}`,
                archiveAttach1: name,
            },
            ['/home/user/report'],
        );
    }
    await expectNothingRan();
}, 180_000);

test('what a file is called and what it holds is never run', async () => {
    session = Session.start(root);
    for (const [number, name] of names.entries()) {
        const line = name.replaceAll('\n', ' ');
        await root.recordingFake('gio', { output: `standard::content-type: ${line}\n` });
        await root.writeFile(
            '/home/user/.config/Orvane/Office.conf',
            `[6.0]\nvyroffice\\Application%20Settings\\AppComponentMode=${line}\n`,
        );
        await root.writeFile('/suite/office/cfgs/setup.cfg', `[Version]\nVersion=${line}\n`);
        await root.writeFile(
            `/usr/share/applications/yozo${name}.desktop`,
            `[Desktop Entry]\nName=${line}\nExec=${line}\n`,
        );
        await root.writeFile(`/home/user/Desktop/vyr-office${name}.desktop`, 'x');
        await root.writeFile(`${workDirectory}/dump/${name}vyr_${number}.dmp${name}`, 'x');
        await root.writeFile(updateSettings, `[update]\na=${line}\n`);
        await root.writeFile('/var/log/vyrlog/vyrupdate.log', name);
        for (const command of [
            'getassoopen',
            'getdesktopiconfile',
            'fixfouricon',
            'getDumpState',
            'getupdateconfig',
            'getlogfile',
        ]) {
            await session.send({ command });
        }
        await session.send({
            command: 'archivepackage',
            choose: ['/home/user/report'],
            args: { archiveDumpInfo: true, archiveVyrInfo: true },
        });
    }
    for (const command of ['getassomime', 'fileassorepair', 'stratcheckenv']) {
        await session.send({ command });
    }
    await session.send({ command: 'cleardumpdir' });
    await session.send({ command: 'clearlogfile' });
    await expectNothingRan();
}, 180_000);
