import fs from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

import { runCommand } from '../assistantctl.mjs';
import { beside, besideLog } from '../beside.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const recordFile = '/tmp/server/requests';

const servers = `
/server/node /server/uploadserver.mjs &
nginx -c /tmp/server/nginx.conf -e /tmp/server/error.log &
for port in 8080 8081 8443; do
    await bash -c "exec 3<> /dev/tcp/127.0.0.1/$port"
done
`;

/** The directory of an installed package that serves require(name). */
function packageDirectory(name, from = import.meta.url) {
    return path.dirname(createRequire(from).resolve(`${name}/package.json`));
}

/** nginx on the ports 8080 and, with a self-signed certificate, 8443; uploads go to busboy. */
export class DocumentServer {
    #root;
    #beside;

    static async create(root) {
        const server = new DocumentServer(root);
        await server.#prepare();
        return server;
    }

    constructor(root) {
        this.#root = root;
    }

    /** The result of a test request: "success", "parame error" or the decoded status text. */
    async test(args) {
        const { answer } = await this.testRaw(args);
        const { result } = answer;
        return ['success', 'parame error'].includes(result)
            ? result
            : Buffer.from(result, 'base64').toString('utf8');
    }

    async testRaw(args) {
        const end = await runCommand(this.#beside, 'openremoveurlcheck', args);
        if (!end.answer) throw new Error(`${end.stderr}\n${await besideLog(this.#root)}`);
        return end;
    }

    /** Runs any command while the server runs. */
    run(command) {
        return this.#beside.run(command);
    }

    /**
     * The requests that reached the upload server: {method, url, headers, body,
     * parts}; parts is what busboy found.
     */
    async requests() {
        if (!(await this.#root.exists(recordFile))) return [];
        const lines = (await this.#root.readFile(recordFile)).split('\n').slice(0, -1);
        return lines.map((line) => {
            const request = JSON.parse(line);
            return { ...request, body: Buffer.from(request.body, 'base64').toString('utf8') };
        });
    }

    async #prepare() {
        const busboy = packageDirectory('busboy');
        const streamsearch = packageDirectory('streamsearch', path.join(busboy, 'package.json'));
        // The Node.js that runs the tests, which may not be in the sandbox's PATH.
        this.#root.bind(fs.realpathSync(process.execPath), '/server/node');
        this.#root.bind(path.join(here, 'uploadserver.mjs'), '/server/uploadserver.mjs');
        this.#root.bind(busboy, '/server/node_modules/busboy');
        this.#root.bind(streamsearch, '/server/node_modules/streamsearch');
        await this.#root.writeFile(
            '/tmp/server/nginx.conf',
            fs.readFileSync(path.join(here, 'nginx.conf')),
        );
        const end = await this.#root.run([
            'openssl',
            'req',
            '-x509',
            '-nodes',
            '-newkey',
            'ec',
            '-pkeyopt',
            'ec_paramgen_curve:prime256v1',
            '-subj',
            '/CN=elsewhere.invalid',
            '-days',
            '1',
            '-keyout',
            '/tmp/server/key.pem',
            '-out',
            '/tmp/server/certificate.pem',
        ]);
        if (end.status !== 0) throw new Error(end.stderr);
        this.#beside = await beside(this.#root, servers);
    }
}
