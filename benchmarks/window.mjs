// Figures of the window, against a bare view of the same Chromium that shows the same page.

import { dirname, join } from 'node:path';
import { bareViewOn, firstPaint, shellOn, withPage } from './devtools.mjs';
import { compare, figure, middleOf } from './measure.mjs';
import { withPrivateHome } from './privatehome.mjs';
import { settledMemoryOf } from './processes.mjs';

/** Short alternating rounds: other work on the machine then affects both alike. */
const roundTrips = 200;
const tripRounds = 31;
/** From start to start a trip differs by a twentieth, in either program. */
const tripStarts = 5;

const mostMemory = 1.05;

const timeOf = (call) => `(async () => {
    while (!(${call})) await new Promise((resolve) => setTimeout(resolve, 10));
    const begin = performance.now();
    for (let n = 0; n < ${roundTrips}; n++) await (${call})();
    return (performance.now() - begin) / ${roundTrips};
})()`;

/** Without a graphics device our window draws without OpenGL; a bare view knows no better. */
const drawnAlike = ['--graphics', 'device'];

/** The check-up of the start must not count as part of a round trip. */
const checkedUp = `new Promise((resolve) => {
    const look = () => {
        const isDone = document.querySelector('.checkup-start')
            && !document.querySelector('.progress-ground');
        if (isDone) resolve();
        else setTimeout(look, 50);
    };
    look();
})`;

const oursCall = "window.helio && (() => window.helio.call('getcollectionpage'))";
const peerCall = "window.echo && (() => window.echo('getcollectionpage'))";

/** @param {{shell: string, bareView: string, html: string}} programs */
export function windowFigures(programs) {
    return withPrivateHome((env) => figuresIn(env, programs));
}

async function trips(shellStart, peerStart) {
    const compareOnce = () =>
        withPage(shellStart, async (ours) => {
            await ours.evaluate(checkedUp);
            return withPage(peerStart, (peer) =>
                compare(
                    tripRounds,
                    () => ours.evaluate(timeOf(oursCall)),
                    () => peer.evaluate(timeOf(peerCall)),
                ),
            );
        });
    const comparisons = [];
    for (let start = 0; start < tripStarts; start++) comparisons.push(await compareOnce());
    return middleOf(comparisons);
}

async function figuresIn(env, { shell, bareView, html }) {
    const shellStart = shellOn(shell, { env });
    const alikeStart = shellOn(shell, { env, args: drawnAlike });
    const peerStart = bareViewOn(bareView, html, { env });
    const waiting = join(dirname(html), 'waiting.html');
    const peerOfTwoPages = bareViewOn(bareView, html, { env, hidden: [waiting] });
    const paintAfterStart = async (page, { startedAt }) =>
        (await page.evaluate(firstPaint)) - startedAt;
    const memory = async (page, { pid }) => {
        await page.evaluate(firstPaint);
        return settledMemoryOf(pid);
    };
    const painting = (start) =>
        compare(
            9,
            () => withPage(start, paintAfterStart),
            () => withPage(peerStart, paintAfterStart),
        );
    const holding = (start) =>
        compare(
            5,
            () => withPage(start, memory),
            () => withPage(peerOfTwoPages, memory),
        );

    return [
        figure('page to library and back', 'ms', await trips(shellStart, peerStart), 1.1),
        figure('start to first paint of the home page', 'ms', await painting(shellStart), 1.05),
        figure(
            'start to first paint of the home page, drawn alike',
            'ms',
            await painting(alikeStart),
            null,
        ),
        figure(
            'memory of the window, against two pages',
            'MiB',
            await holding(shellStart),
            mostMemory,
        ),
        figure(
            'memory of the window, against two pages, drawn alike',
            'MiB',
            await holding(alikeStart),
            null,
        ),
    ];
}
