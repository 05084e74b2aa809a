/** How many runs a test kills; more find rarer damage. */
const kills = Number(process.env.KILLS ?? 8);

/**
 * Bash functions that kill a command's process group.
 * measure COMMAND...: sets length to the microseconds of a whole run.
 * kill_at KILL COMMAND...: kills a run at the KILLth of `kills` moments, spread over that length.
 */
const functions = `
    measure() {
        local start=\${EPOCHREALTIME/./}
        setsid -w "$@" > /dev/null 2>&1
        length=$((\${EPOCHREALTIME/./} - start))
    }
    kill_at() {
        setsid "\${@:2}" > /dev/null 2>&1 &
        local group=$!
        sleep "$(awk "BEGIN { print $length * $1 / ${kills} / 1e6 }")"
        kill -KILL -- "-$group"
        wait "$group"
    } 2> /dev/null
`;

/**
 * Runs bash `lines` for each kill in one sandbox, with its number in $kill, `first` before and
 * `last` after them: {damaged, last}, what the lines printed unless it is nothing, and what `last`
 * printed.
 */
export async function eachKill(root, { first = '', lines, last = '' }) {
    const end = await root.run(
        [
            'bash',
            '-c',
            `${functions}
         ${first}
         for ((kill = 0; kill < ${kills}; kill++)); do
             ${lines}
             printf '\\0'
         done
         ${last}`,
        ],
        { timeoutMs: 60_000 + kills * 5_000 },
    );
    const outputs = end.stdout.split('\0');
    if (outputs.length !== kills + 1) throw new Error(`${end.stdout}\n${end.stderr}`);
    return {
        damaged: outputs.slice(0, -1).filter((output) => output !== ''),
        last: outputs.at(-1),
    };
}
