import { parseEvents } from '../assistantctl.mjs';

export const workDirectory = '/home/user/.local/share/Orvane/tmp';
export const staging = `${workDirectory}/officeassis_script`;

/** Fills the disk of that directory. */
const fill = (directory) =>
    `head -c 10000000 /dev/zero > ${directory}/filling 2> /dev/null || true`;

/**
 * Runs a script in which the disk of that directory is small and, when the script calls it, "fill"
 * takes the rest of it. The disk is gone after the script; only its output remains.
 */
export function onSmallDisk(root, directory, bytes, script) {
    root.smallDisk(directory, bytes);
    return root.run([
        'bash',
        '-c',
        `fill() { ${fill(directory)}; }
PATH=$PATH:/suite/office
${script}`,
    ]);
}

/** The events among the lines of a script's output, which prints other lines too. */
function eventsIn(output) {
    const lines = output.split('\n').filter((line) => line.startsWith('{"'));
    return parseEvents(lines.map((line) => `${line}\n`).join(''));
}

/** The result of the last answer of a command in a script's output. */
export function resultIn(output, command) {
    return eventsIn(output)
        .filter((event) => event.command === command)
        .at(-1)?.result;
}
