export const UPDATER = '/opt/orvane/vtool/vyrupdate';
export const CONFIG = '/opt/orvane/vtool/vyrupdate.cfg';
export const LOG = '/var/log/vyrlog/vyrupdate.log';

const CALLS = '/opt/orvane/calls';

/** An updater that records its calls. */
export function installUpdater(root) {
    return root.writeFile(
        UPDATER,
        `#!/bin/bash
printf '%s\\n' "$#" "$@" "$PWD" > ${CALLS}.new
mv ${CALLS}.new ${CALLS}
`,
        { mode: 0o755 },
    );
}

/** Waits for the updater's call: {args, directory}. */
export async function updaterCall(root) {
    if (!(await root.exists(CALLS))) return null;
    const [count, ...words] = (await root.readFile(CALLS)).split('\n').slice(0, -1);
    await root.remove(CALLS);
    return { args: words.slice(0, Number(count)), directory: words[Number(count)] };
}
