import path from 'node:path';
import { end, start, waitFor } from 'browser-driver';

/** A session bus of its own for the programs of a scratch suite. */
export class SessionBus {
    #daemon;
    /** What finds the bus. */
    env = {};

    static async start(suite) {
        const bus = new SessionBus();
        const address = `unix:path=${path.join(suite.directory, 'bus')}`;
        bus.env = { DBUS_SESSION_BUS_ADDRESS: address };
        const words = ['--session', '--nofork', '--print-address', '--address', address];
        bus.#daemon = start('dbus-daemon', words, { stdio: ['ignore', 'pipe', 'ignore'] });
        let printed = '';
        bus.#daemon.stdout.on('data', (text) => {
            printed += text;
        });
        await waitFor(() => printed.includes('\n'), { what: 'the session bus' });
        return bus;
    }

    async stop() {
        await end(this.#daemon);
    }
}
