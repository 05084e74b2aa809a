import fs from 'node:fs';
import path from 'node:path';

const place = '/tmp/cups';
const queue = (name, kind) => `<${kind} ${name}>
UUID urn:uuid:00000000-0000-0000-0000-00000000000${name.length}
Info ${name}
DeviceURI file:///dev/null
State Stopped
StateMessage Paused
Accepting Yes
Shared No
JobSheets none none
OpPolicy default
ErrorPolicy stop-printer
</${kind}>
`;
const files = {
    'cupsd.conf': `LogLevel warn
Listen /run/cups/cups.sock
Browsing Off
DefaultAuthType None
WebInterface No
<Location />
Order allow,deny
</Location>
<Policy default>
<Limit All>
Order allow,deny
</Limit>
</Policy>
`,
    'cups-files.conf': `FileDevice Yes
User user
SystemGroup user
ServerRoot ${place}
StateDir ${place}/state
CacheDir ${place}/cache
RequestRoot ${place}/spool
TempDir ${place}/temp
DataDir ${place}/programs/share/cups
ServerBin ${place}/programs/lib/cups
AccessLog ${place}/access.log
ErrorLog ${place}/error.log
PageLog ${place}/page.log
`,
    'printers.conf': queue('office', 'DefaultPrinter') + queue('hall', 'Printer'),
};

/** Starts the service; then programs find it as that of the machine. */
export const startsPrinting = `
${place}/programs/sbin/cupsd -f -c ${place}/cupsd.conf -s ${place}/cups-files.conf >/dev/null 2>&1 &
timeout 20 bash -c 'until lpstat -r | grep -q "is running"; do sleep 0.05; done'
`;

/**
 * A real CUPS, unpacked to a folder of the host, with two printers that keep their jobs: "office",
 * that of the system, and "hall".
 */
export async function addPrinting(office, unpacked) {
    for (const [name, content] of Object.entries(files)) {
        await office.writeFile(`${place}/${name}`, content);
    }
    for (const name of ['state', 'cache', 'spool', 'temp']) {
        await office.makeDirectory(`${place}/${name}`);
    }
    await office.makeDirectory('/run/cups');
    fs.cpSync(unpacked, path.join(office.hostPath(place), 'programs'), {
        recursive: true,
        verbatimSymlinks: true,
    });
    office.addPrograms(['bin/lpstat'].map((name) => path.join(unpacked, name)));
}
