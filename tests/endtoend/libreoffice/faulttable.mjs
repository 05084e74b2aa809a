import fs from 'node:fs';
import path from 'node:path';

import { repository } from '../paths.mjs';

const folder = path.join(repository, 'out/libreoffice-faults');
const columns = ['fault', 'check', 'seen in LibreOffice', 'named alone', 'mended', 'undone', 's'];

/**
 * What the tests of a file have seen of each fault. Once all are planted, they are written to
 * out/libreoffice-faults, and with what other files have written there, as a table.
 */
export class FaultTable {
    #rows = new Map();

    /** Takes down what a test has seen of a fault; of texts for one column each is shown once. */
    note({ name, check }, seen) {
        const row = this.#rows.get(name) ?? { fault: name, check };
        this.#rows.set(name, merged(row, seen));
    }

    /** Runs a test of a fault, and takes down how long it takes. */
    async timed(fault, run) {
        const start = Date.now();
        await run();
        this.note(fault, { s: (Date.now() - start) / 1000 });
    }

    write(part) {
        fs.mkdirSync(folder, { recursive: true });
        const rows = [...this.#rows.values()];
        fs.writeFileSync(path.join(folder, `${part}.json`), JSON.stringify(rows, null, 4));
        fs.writeFileSync(path.join(folder, 'table.md'), tableOf(allRows()));
    }
}

function merged(row, more) {
    const both = { ...row };
    for (const [column, value] of Object.entries(more)) {
        const earlier = both[column];
        if (earlier === undefined || earlier === value) both[column] = value;
        else if (column === 's') both[column] = earlier + value;
        else if (column !== 'fault' && column !== 'check') both[column] = `${earlier}; ${value}`;
    }
    return both;
}

function allRows() {
    const rows = new Map();
    for (const name of fs.readdirSync(folder).filter((entry) => entry.endsWith('.json'))) {
        for (const row of JSON.parse(fs.readFileSync(path.join(folder, name), 'utf8'))) {
            rows.set(row.fault, merged(rows.get(row.fault) ?? {}, row));
        }
    }
    return [...rows.values()];
}

const cellOf = (value) =>
    typeof value === 'number' ? value.toFixed(1) : (value ?? '–').replaceAll('|', '\\|');
const lineOf = (cells) => `| ${cells.join(' | ')} |\n`;

function tableOf(rows) {
    const lines = rows.map((row) => lineOf(columns.map((column) => cellOf(row[column]))));
    return lineOf(columns) + lineOf(columns.map(() => '---')) + lines.join('');
}
