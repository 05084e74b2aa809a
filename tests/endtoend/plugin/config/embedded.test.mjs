import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';

import { expect, test } from 'vitest';

import { scriptNames } from '../../paths.mjs';

const NAMES = [
    'archivepackage.sh',
    'assocheck.sh',
    'desktopcheck.sh',
    'extractfont.sh',
    'getbrowserinfo.sh',
    'getdesktopfile.sh',
    'getdesktoppath.sh',
    'getfileinfo.sh',
    'getmimeinfo.sh',
    'getopeninfo.sh',
    'recovericon.sh',
    'repairasso.sh',
];

const onDisk = fs
    .readdirSync(scriptNames)
    .filter((name) => name.endsWith('.sh'))
    .sort();

test('the twelve scripts and no other are in the resource list', () => {
    const list = fs.readFileSync(path.join(scriptNames, 'config.qrc'), 'utf8');
    const named = [...list.matchAll(/<file>(.*)<\/file>/g)].map(([, name]) => name);
    expect(named.sort()).toEqual(NAMES);
    expect(list).toContain('prefix="/config"');
    expect(onDisk).toEqual(NAMES);
});

test.each(NAMES)('%s is a bash script', (name) => {
    expect(fs.readFileSync(path.join(scriptNames, name), 'utf8')).toMatch(/^#!\/bin\/bash\n/);
});

test('shellcheck finds nothing', () => {
    execFileSync('shellcheck', onDisk, { cwd: scriptNames, encoding: 'utf8' });
});
