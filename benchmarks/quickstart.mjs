// How long a document takes from its opening to its window, with LibreOffice kept warm and without.

import { execFileSync, spawn } from 'node:child_process';
import { existsSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { compare, figure } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';

const rounds = 5;
const longestMs = 60_000;
const folder = '/usr/lib/libreoffice/program';

/** Ends the LibreOffice of a private home and waits for its end. */
function endOffice(home) {
    for (const pid of readdirSync('/proc').filter((name) => /^\d+$/.test(name))) {
        try {
            const isOffice = readFileSync(`/proc/${pid}/comm`, 'utf8').startsWith('soffice');
            const environment = isOffice ? readFileSync(`/proc/${pid}/environ`, 'utf8') : '';
            if (!environment.includes(`HOME=${home}\0`)) continue;
            process.kill(Number(pid), 'SIGKILL');
            execFileSync('tail', ['--pid', pid, '-f', '/dev/null'], { timeout: longestMs });
        } catch (error) {
            if (!['ENOENT', 'ESRCH', 'EACCES'].includes(error.code)) throw error;
        }
    }
}

function windowOf(document, env) {
    const begin = performance.now();
    spawn('soffice', ['--norestore', '--nologo', document], { env, stdio: 'ignore' }).unref();
    execFileSync('xdotool', ['search', '--sync', '--onlyvisible', '--name', 'plan.odt'], {
        env,
        timeout: longestMs,
    });
    return performance.now() - begin;
}

/** @param {{quickstart: string}} programs */
export async function quickstartFigures({ quickstart }) {
    const hasWindow =
        existsSync(folder) && readdirSync(folder).some((name) => name.startsWith('libvclplug_'));
    if (!hasWindow || !process.env.DISPLAY) {
        console.log(
            'not measured: a warm LibreOffice, which needs a display and its window plug-in',
        );
        return [];
    }
    return withPrivateHome(async (env, home) => {
        const text = join(home, 'plan.txt');
        writeFileSync(text, 'A plan.\n');
        execFileSync('soffice', ['--headless', '--convert-to', 'odt', '--outdir', home, text], {
            env,
            stdio: 'ignore',
            timeout: longestMs,
        });
        const document = join(home, 'plan.odt');
        const measure = (isWarm) => () => {
            if (isWarm) execFileSync(quickstart, ['start'], { env, timeout: longestMs });
            const time = windowOf(document, env);
            endOffice(home);
            return time;
        };
        const time = await compare(rounds, measure(true), measure(false));
        return [figure('a document to its window, LibreOffice kept warm', 'ms', time, 0.5)];
    });
}
