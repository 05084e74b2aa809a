// Measures every figure, prints a line for each and writes them to out/bench.json.

import { mkdirSync, writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { associationFigures } from './associations.mjs';
import { commandLineFigures } from './commandline.mjs';
import { commandFigures } from './commands.mjs';
import { doctorFigures } from './doctor.mjs';
import { fleetFigures } from './fleet.mjs';
import { libreofficeFigures } from './libreoffice.mjs';
import { loadingFigures } from './loading.mjs';
import { missingFontsFigures } from './missingfonts.mjs';
import { quickstartFigures } from './quickstart.mjs';
import { searchFigures } from './search.mjs';
import { viewFigures } from './views.mjs';
import { windowFigures } from './window.mjs';

const root = fileURLToPath(new URL('..', import.meta.url));
const office = `${root}build/suite/office`;
const htmlDirectory = `${office}/addons/vyrassistanttool/officeassistant/resource/html`;
const programs = {
    suite: `${root}build/suite`,
    assistantctl: `${office}/assistantctl`,
    vyr: `${office}/vyr`,
    quickstart: `${office}/quickstartoffice`,
    shell: `${office}/helio-shell`,
    htmlDirectory,
    html: `${htmlDirectory}/index.html`,
    bareApplication: `${root}build/benchmarks/peers/bare_application`,
    bareView: `${root}build/benchmarks/peers/bare_view`,
    plugin: `${office}/addons/vyrassistanttool/libofficeassistant.so`,
    emptyPlugin: `${root}build/benchmarks/peers/libempty_plugin.so`,
    probeChecks: `${root}build/benchmarks/peers/probe_checks`,
    listSuffixes: `${root}build/benchmarks/peers/list_suffixes`,
    loadPlugin: `${root}build/benchmarks/peers/load_plugin`,
};

function line({ name, unit, goal, ours, peer, ratio }) {
    const verdict =
        goal === null ? '' : ` (goal ${goal} or less: ${ratio <= goal ? 'met' : 'MISSED'})`;
    return `${name}: ${ratio.toFixed(2)} = ${ours.toPrecision(3)} ${unit} / ${peer.toPrecision(3)} ${unit}${verdict}`;
}

const figures = [];
for (const measure of [
    loadingFigures,
    doctorFigures,
    associationFigures,
    libreofficeFigures,
    fleetFigures,
    commandLineFigures,
    commandFigures,
    searchFigures,
    missingFontsFigures,
    quickstartFigures,
    windowFigures,
    viewFigures,
]) {
    for (const measured of await measure(programs)) {
        figures.push(measured);
        console.log(line(measured));
    }
}
mkdirSync(`${root}out`, { recursive: true });
writeFileSync(`${root}out/bench.json`, `${JSON.stringify(figures, null, 4)}\n`);
