import type { Page } from 'browser-driver';
import { describe, expect, it } from 'vitest';
import { named, open, useBrowser } from './playing';

useBrowser();

interface MachineReading {
    load: number[];
    processors: number;
    memory: Record<'total' | 'available' | 'swapTotal' | 'swapFree', number>;
    pressure: Record<string, number[]>;
}

/** A machine with nothing much to do. */
const idle = {
    load: [0.06, 0.08, 0.04],
    processors: 4,
    memory: { total: 1000, available: 970, swapTotal: 1000, swapFree: 985 },
    pressure: { cpu: [1, 1.5, 2], memory: [], io: [] },
};

declare global {
    interface Window {
        /** What has been written on the charts. */
        written: string[];
    }
}

/** Shows the view at its first reading. */
async function atFirstReading(machine: MachineReading): Promise<Page> {
    const scene = named('processes');
    const [first] = scene.answers!['task.processes'] as { result: object }[];
    const answers = {
        ...scene.answers,
        'task.processes': { late: true, result: { ...first!.result, ...machine } },
    };
    const view = await open({ ...scene, answers });
    await view.evaluate(() => {
        const { fillText } = CanvasRenderingContext2D.prototype;
        window.written = [];
        CanvasRenderingContext2D.prototype.fillText = function (...words) {
            window.written.push(words[0]);
            fillText.apply(this, words);
        };
        window.answerLate();
    });
    await view.locator('.history-chart canvas').waitFor();
    await view.evaluate(
        () => new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve))),
    );
    return view;
}

/**
 * Where the line of each chart is, in parts of its plot: 0 is the left or lower end, 1 the right or
 * upper one.
 */
function drawnLines(view: Page) {
    return view.evaluate(() => {
        const probe = document.createElement('i');
        probe.style.color = 'var(--accent)';
        document.body.append(probe);
        const accent = getComputedStyle(probe).color.match(/\d+/g)!.map(Number);
        probe.remove();
        return [...document.querySelectorAll('.history-curve')].map((curve) => {
            const canvas = curve.querySelector('canvas')!;
            const { data } = canvas
                .getContext('2d')!
                .getImageData(0, 0, canvas.width, canvas.height);
            const whole = canvas.getBoundingClientRect();
            const plot = curve.querySelector('.u-over')!.getBoundingClientRect();
            const across: number[] = [];
            const up: number[] = [];
            for (let at = 0; at < data.length; at += 4) {
                const isLine = accent.every(
                    (part, index) => Math.abs(part - data[at + index]!) < 9,
                );
                if (!isLine || data[at + 3] !== 255) continue;
                const pixel = at / 4;
                const x = whole.left + ((pixel % canvas.width) * whole.width) / canvas.width;
                const y =
                    whole.top + (Math.floor(pixel / canvas.width) * whole.height) / canvas.height;
                across.push((x - plot.left) / plot.width);
                up.push((plot.bottom - y) / plot.height);
            }
            return {
                name: curve.querySelector('.history-figure span')!.textContent,
                left: Math.min(...across),
                right: Math.max(...across),
                low: Math.min(...up),
                high: Math.max(...up),
            };
        });
    });
}

describe('the curves of an idle machine, at the first reading', () => {
    it('are seen well above the floor, and stay in their plots', async () => {
        const view = await atFirstReading(idle);
        const lines = await drawnLines(view);
        expect(lines.map(({ name }) => name)).toEqual([
            'CPU',
            'Memory in use',
            'Swap in use',
            'Time spent waiting',
        ]);
        // The line and the mark of a single reading have some thickness.
        const thickness = 0.08;
        for (const { name, left, right, low, high } of lines) {
            expect(high, name).toBeGreaterThan(0.25);
            expect(high, name).toBeLessThan(1);
            expect(low, name).toBeGreaterThan(0.1);
            expect(left, name).toBeGreaterThan(-thickness);
            expect(right, name).toBeLessThan(1 + thickness);
        }
        await view.close();
    });

    it('go back as far as the averages of the kernel', async () => {
        const view = await atFirstReading(idle);
        const [processor, , , waited] = await drawnLines(view);
        expect(processor!.left).toBeLessThan(0.05);
        expect(processor!.right).toBeGreaterThan(0.9);
        // Of 15 minutes, the last five.
        expect(waited!.left).toBeGreaterThan(0.6);
        expect(waited!.left).toBeLessThan(0.7);
        expect(waited!.right).toBeGreaterThan(0.98);
        await view.close();
    });

    it('have axes that fit them', async () => {
        const view = await atFirstReading(idle);
        const written = await view.evaluate(() => window.written);
        expect(new Set(written.filter((text) => text.includes('%')))).toEqual(
            new Set(['0%', '2.5%', '5%']),
        );
        const ages = written
            .filter((text) => text.includes(':'))
            .map(
                (text) =>
                    (Date.now() - Date.parse(`${new Date().toDateString()} ${text}`)) / 60_000,
            )
            // The last quarter of an hour may have begun yesterday.
            .map((age) => (age + 24 * 60) % (24 * 60));
        expect(ages.length).toBeGreaterThan(3);
        expect(Math.max(...ages)).toBeLessThan(17);
        await view.close();
    });
});

it('the curves of a busy machine fill their plots and do not leave them', async () => {
    const view = await atFirstReading({
        load: [9, 12, 7],
        processors: 4,
        memory: { total: 1000, available: 3, swapTotal: 1000, swapFree: 0 },
        pressure: { cpu: [97, 100, 99], memory: [], io: [] },
    });
    for (const { name, low, high } of await drawnLines(view)) {
        expect(low, name).toBeGreaterThan(0.9);
        expect(high, name).toBeLessThan(1.08);
    }
    await view.close();
});

it('there is no curve of what the machine does not have', async () => {
    const view = await atFirstReading({
        ...idle,
        memory: { ...idle.memory, swapTotal: 0, swapFree: 0 },
        pressure: { cpu: [], memory: [], io: [] },
    });
    expect((await drawnLines(view)).map(({ name }) => name)).toEqual(['CPU', 'Memory in use']);
    await view.close();
});
