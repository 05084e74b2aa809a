import { once } from 'node:events';
import net from 'node:net';

/** A server that no page may reach: counts connections and answers at once. */
export class RemoteServer {
    #server;
    connections = 0;

    static async start() {
        const remote = new RemoteServer();
        remote.#server = net
            .createServer((socket) => {
                remote.connections += 1;
                socket.on('error', () => {});
                socket.end(
                    'HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n' +
                        'Access-Control-Allow-Origin: *\r\nConnection: close\r\n\r\n<title>remote</title>',
                );
            })
            .listen(0, '127.0.0.1');
        await once(remote.#server, 'listening');
        return remote;
    }

    /** As in 127.0.0.1:1234. */
    get place() {
        return `127.0.0.1:${this.#server.address().port}`;
    }

    async stop() {
        this.#server.close();
        await once(this.#server, 'close');
    }
}
