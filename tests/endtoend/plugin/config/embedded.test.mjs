import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';

import { expect, test } from 'vitest';

import { SCRIPT_FOLDER } from './scriptrunner.mjs';

const SCRIPTS = [
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
    .readdirSync(SCRIPT_FOLDER)
    .filter((name) => name.endsWith('.sh'))
    .sort();

test('the twelve scripts and no other are in the resource list', () => {
    const list = fs.readFileSync(path.join(SCRIPT_FOLDER, 'config.qrc'), 'utf8');
    const named = [...list.matchAll(/<file>(.*)<\/file>/g)].map(([, name]) => name);
    expect(named.sort()).toEqual(SCRIPTS);
    expect(list).toContain('prefix="/config"');
    expect(onDisk).toEqual(SCRIPTS);
});

test.each(SCRIPTS)('%s is a bash script', (name) => {
    expect(fs.readFileSync(path.join(SCRIPT_FOLDER, name), 'utf8')).toMatch(/^#!\/bin\/bash\n/);
});

test('shellcheck finds nothing', () => {
    execFileSync('shellcheck', onDisk, { cwd: SCRIPT_FOLDER, encoding: 'utf8' });
});
