export const updaterPath = '/opt/orvane/vtool/vyrupdate';
export const configFile = '/opt/orvane/vtool/vyrupdate.cfg';
export const logFile = '/var/log/vyrlog/vyrupdate.log';

const callsFile = '/opt/orvane/calls';

/** An updater that records its calls. */
export function installUpdater(root) {
    return root.writeFile(
        updaterPath,
        `#!/bin/bash
printf '%s\\n' "$#" "$@" "$PWD" > ${callsFile}.new
mv ${callsFile}.new ${callsFile}
`,
        { mode: 0o755 },
    );
}

/** Waits for the updater's call: {args, directory}. */
export async function updaterCall(root) {
    if (!(await root.exists(callsFile))) return null;
    const [count, ...words] = (await root.readFile(callsFile)).split('\n').slice(0, -1);
    await root.remove(callsFile);
    return { args: words.slice(0, Number(count)), directory: words[Number(count)] };
}
