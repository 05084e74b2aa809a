import { execFile } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { promisify } from 'node:util';
import { inflateSync } from 'node:zlib';
import { end, start, waitFor } from 'browser-driver';

import { VirtualDisplay } from './virtualdisplay.mjs';

const run = promisify(execFile);
const configuration = `[core]
idle-time=0
[shell]
panel-position=none
locking=false
animation=none
startup-animation=none
`;

/** The rows of a PNG with 8 bits a channel, each as its bytes; `depth` is how many a pixel has. */
function decodedPng(file) {
    const content = fs.readFileSync(file);
    const width = content.readUInt32BE(16);
    const depth = { 2: 3, 6: 4 }[content[25]];
    const parts = [];
    for (let at = 8; at < content.length; at += 12 + content.readUInt32BE(at)) {
        if (content.toString('latin1', at + 4, at + 8) === 'IDAT') {
            parts.push(content.subarray(at + 8, at + 8 + content.readUInt32BE(at)));
        }
    }
    const data = inflateSync(Buffer.concat(parts));
    const rows = [];
    /** @type {Uint8Array} */
    let above = new Uint8Array(width * depth);
    for (let at = 0; at < data.length; at += width * depth + 1) {
        const row = data.subarray(at + 1, at + 1 + width * depth);
        for (let i = 0; i < row.length; i += 1) {
            const left = i < depth ? 0 : row[i - depth];
            const corner = i < depth ? 0 : above[i - depth];
            const guess = left + above[i] - corner;
            const distances = [left, above[i], corner].map((value) => Math.abs(guess - value));
            const nearest = [left, above[i], corner][distances.indexOf(Math.min(...distances))];
            row[i] += [0, left, above[i], (left + above[i]) >> 1, nearest][data[at]];
        }
        rows.push(row);
        above = row;
    }
    return { rows, depth };
}

/** A private Wayland session with screen, keyboard and mouse: Weston in a virtual X display. */
export class WaylandDisplay {
    #suite;
    #compositor;
    #outside;
    #screen;

    /** What leads programs there, and has them say on standard error what they ask for. */
    env = { WAYLAND_DISPLAY: 'wayland-test', QT_QPA_PLATFORM: 'wayland', WAYLAND_DEBUG: '1' };

    static async start(suite) {
        const display = new WaylandDisplay();
        display.#suite = suite;
        try {
            display.#outside = await VirtualDisplay.start(suite.home);
            await display.#startCompositor();
        } catch (error) {
            await display.stop();
            throw error;
        }
        return display;
    }

    async #startCompositor() {
        const file = path.join(this.#suite.directory, 'weston.ini');
        fs.writeFileSync(file, configuration);
        const words = [
            '--backend=x11-backend.so',
            '--use-pixman',
            '--width=1300',
            '--height=900',
            `--socket=${this.env.WAYLAND_DISPLAY}`,
            `--config=${file}`,
            // So that it lets itself be pictured.
            '--debug',
        ];
        // The compositor has to see the mouse enter its screen to know where it is.
        await this.act('mousemove', 1399, 999);
        const env = this.#suite.environment(this.#outside);
        this.#compositor = start('weston', words, { env, stdio: 'ignore' });
        const socket = path.join(env.XDG_RUNTIME_DIR, this.env.WAYLAND_DISPLAY);
        await waitFor(() => fs.existsSync(socket), { what: 'the compositor' });
        const find = () => this.#outside.windows(['--class', '^weston']);
        const [window] = await waitFor(async () => (await find()).length > 0 && find(), {
            what: 'the screen',
        });
        this.#screen = window;
    }

    /** {left, right, top, bottom} of what has exactly that colour; null if nothing has. */
    async boundsOf(colour) {
        const directory = fs.mkdtempSync(path.join(this.#suite.directory, 'picture-'));
        const env = { ...this.#suite.environment(), ...this.env, WAYLAND_DEBUG: '' };
        await run('weston-screenshooter', [], { cwd: directory, env, timeout: 60_000 });
        const [name] = fs.readdirSync(directory);
        const { rows, depth } = decodedPng(path.join(directory, name));
        let bounds = null;
        for (const [y, row] of rows.entries()) {
            for (let x = 0; x * depth < row.length; x += 1) {
                if (colour.every((value, channel) => row[x * depth + channel] === value)) {
                    const { left, right, top } = bounds ?? { left: x, right: x, top: y };
                    bounds = { left: Math.min(left, x), right: Math.max(right, x), top, bottom: y };
                }
            }
        }
        return bounds;
    }

    /** Runs xdotool; the mouse is moved on the screen of the session. */
    async act(...words) {
        return this.#outside.act(...words);
    }

    async moveMouse(x, y) {
        // The first movement only tells the compositor where the mouse is.
        await this.act('mousemove', '--window', this.#screen, x - 1, y);
        await this.act('mousemove', '--window', this.#screen, x, y);
    }

    async stop() {
        if (this.#compositor) await end(this.#compositor);
        await this.#outside?.stop();
    }
}
