import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';

import { expect, test } from 'vitest';

import { scriptsDirectory } from '../../paths.mjs';

const scriptNames = [
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
    .readdirSync(scriptsDirectory)
    .filter((name) => name.endsWith('.sh'))
    .sort();

test('the twelve scripts and no other are in the resource list', () => {
    const list = fs.readFileSync(path.join(scriptsDirectory, 'config.qrc'), 'utf8');
    const named = [...list.matchAll(/<file>(.*)<\/file>/g)].map(([, name]) => name);
    expect(named.sort()).toEqual(scriptNames);
    expect(list).toContain('prefix="/config"');
    expect(onDisk).toEqual(scriptNames);
});

test.each(scriptNames)('%s is a bash script', (name) => {
    expect(fs.readFileSync(path.join(scriptsDirectory, name), 'utf8')).toMatch(/^#!\/bin\/bash\n/);
});

test('shellcheck finds nothing', () => {
    execFileSync('shellcheck', onDisk, { cwd: scriptsDirectory, encoding: 'utf8' });
});
