// What many desktops cost: the controller, and each host beside the doctor alone.

import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

import { bounded, figure } from './measure.mjs';

const hosts = 2000;
const findings = 200;
const longestSeconds = 10;
const mostMebibytes = 300;
const shareOfDoctor = 1.3;

const here = (path) => fileURLToPath(new URL(`fleet/${path}`, import.meta.url));

/** The numbers that one of the scripts here prints. */
function numbersOf(script, ...args) {
    const output = execFileSync('/usr/bin/python3', ['-B', here(script), ...args], {
        encoding: 'utf8',
    });
    return output.trim().split(' ').map(Number);
}

function controllerFigures() {
    const [seconds, mebibytes] = numbersOf('controller.py', String(hosts), String(findings));
    const name = `${hosts} hosts with ${findings} findings each`;
    return [
        bounded(`table of ${name}`, 's', seconds, longestSeconds),
        bounded(`controller of ${name}: memory`, 'MiB', mebibytes, mostMebibytes),
    ];
}

/** Needs root, as the hosts of the tests do. */
function costFigures() {
    if (process.getuid() !== 0) {
        console.log('a host through Ansible: not measured, this needs root');
        return [];
    }
    const [ours, doctor, ping, same] = numbersOf('cost.py');
    const peer = shareOfDoctor * doctor + ping;
    const name = `a host through Ansible, against ${shareOfDoctor} times the doctor and Ansible's ping`;
    return [
        figure(name, 's', { ours, peer, ratio: ours / peer }, 1),
        figure('the same without pipelining', 's', { ours: same, peer, ratio: same / peer }, null),
    ];
}

export function fleetFigures() {
    return [...controllerFigures(), ...costFigures()];
}
