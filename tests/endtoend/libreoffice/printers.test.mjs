import { afterAll, describe, expect, test } from 'vitest';

import { FaultTable } from './faulttable.mjs';
import { OfficeRoot, removeUsedProfile } from './officeroot.mjs';
import { addPrinting, startsPrinting } from './printers.mjs';

/** What ./test libreoffice unpacks: a CUPS, and a LibreOffice that prints with it. */
const withPrinting = process.env.LIBREOFFICE_PRINTING ?? '';
const withWindows = process.env.LIBREOFFICE_WINDOWS ?? '';
const program = '/suite/office/assistantctl';
const options = '/home/user/.cups/lpoptions';
/** Several starts of LibreOffice in one run. */
const patience = 230_000;
const named = `${program} doctor --json |
    grep -oP '"check":"libreoffice\\.\\K(?!fonts-)[a-z-]+(?=".*"type":"finding")'`;
const table = new FaultTable();

afterAll(() => {
    removeUsedProfile();
    if (withPrinting) table.write('printers');
});

async function withPrinters(fault, use) {
    const office = await OfficeRoot.create();
    try {
        office.bind(withWindows, '/usr/lib/libreoffice');
        await office.makeDirectory('/home/user/.cups');
        await addPrinting(office, withPrinting);
        await table.timed(fault, () => use(office));
    } finally {
        await office.dispose();
    }
}

describe.runIf(withPrinting && withWindows)('with a real CUPS', () => {
    test('a default printer that is gone is named, and LibreOffice prints elsewhere', async () => {
        const fault = { name: 'a default printer that is gone', check: 'default-printer' };
        await withPrinters(fault, async (office) => {
            const content = '# mine\nDefault attic\n';
            await office.writeFile(options, content);
            const { stdout } = await office.shell(
                `${startsPrinting}
                print() { timeout 60 soffice --headless -p plan.txt >/dev/null 2>&1; }
                echo 'Default office' > healthy; cp ${options} gone
                cp healthy ${options}; ${named}; print
                cp gone ${options}; ${named}; print
                ${program} doctor --fix --yes libreoffice.default-printer >/dev/null
                echo "fixed: $?"
                ${named}; cat ${options}; print
                lpstat -o | cut -d ' ' -f 1 | sort -t - -k 2
                ${program} doctor undo >/dev/null && cat ${options}`,
                {},
                patience,
            );
            expect(stdout.split('\n')).toEqual([
                'default-printer',
                'fixed: 0',
                '# mine',
                'office-1',
                'hall-2',
                'office-3',
                ...content.split('\n'),
            ]);
            table.note(fault, {
                'seen in LibreOffice': 'its job goes to another printer',
                'named alone': 'yes',
                mended: 'yes',
                undone: 'yes',
            });
        });
    });

    test('with a print server that does not answer nothing is printed', async () => {
        const fault = { name: 'a print server that does not answer', check: 'print-server' };
        await withPrinters(fault, async (office) => {
            const { stdout } = await office.shell(
                `${startsPrinting}
                print() { timeout 60 soffice --headless -p plan.txt >/dev/null 2>&1; }
                echo 'ServerName 127.0.0.2' > .cups/client.conf
                print
                ${program} doctor --fix --yes libreoffice.print-server >/dev/null
                echo "fixed: $?"
                lpstat -o; print; lpstat -o | cut -d ' ' -f 1`,
                {},
                patience,
            );
            expect(stdout).toBe('fixed: 0\noffice-1\n');
            table.note(fault, { 'seen in LibreOffice': 'nothing is printed', mended: 'yes' });
        });
    });
});
