// What the controller of many desktops needs for their table.

import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { bounded } from './measure.mjs';

const hosts = 2000;
const findings = 200;
const longestSeconds = 10;
const mostMebibytes = 300;

const here = (path) => fileURLToPath(new URL(path, import.meta.url));

export function fleetFigures() {
    const output = execFileSync(
        '/usr/bin/python3',
        [
            here('fleettable.py'),
            here('../packaging/ansible/plugins/filter'),
            String(hosts),
            String(findings),
        ],
        { encoding: 'utf8' },
    );
    const [seconds, mebibytes] = output.trim().split(' ').map(Number);
    const name = `table of ${hosts} hosts with ${findings} findings each`;
    return [
        bounded(`${name}: time`, 's', seconds, longestSeconds),
        bounded(`${name}: memory`, 'MiB', mebibytes, mostMebibytes),
    ];
}
