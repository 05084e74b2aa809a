import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

import { SandboxRoot } from '../sandboxroot.mjs';
import { hangingShare } from './hangingshare.mjs';
import { textIn } from './items.mjs';
import { seenIn, sessionOf, sessionWith } from './windowsession.mjs';

export const profile = '/home/user/.config/libreoffice/4/user';
export const settings = `${profile}/registrymodifications.xcu`;
const program = '/suite/office/assistantctl';
const document = '/home/user/plan.txt';
/** Documents are saved as ODF 1.2: what LibreOffice writes shows whether it read its settings. */
const savesOdf12 =
    '<item oor:path="/org.openoffice.Office.Common/Save/ODF"><prop oor:name="DefaultVersion" ' +
    'oor:op="fuse"><value>4</value></prop></item>\n';

let used;

/** A profile that the real LibreOffice made and used, as a directory of the host. */
async function usedProfile() {
    const root = await OfficeRoot.empty();
    try {
        await root.convert();
        await root.addItem(savesOdf12);
        await root.convert();
        // Its first start has left this; the next one with windows would restore a session.
        const content = await root.readFile(settings);
        await root.writeFile(settings, content.replace(/^.*"OfficeRestartInProgress".*\n/m, ''));
        const copy = fs.mkdtempSync(path.join(os.tmpdir(), 'profile-'));
        fs.cpSync(root.hostPath('/home/user/.config'), copy, { recursive: true });
        return copy;
    } finally {
        await root.dispose();
    }
}

export function removeUsedProfile() {
    if (used !== undefined) fs.rmSync(used, { recursive: true, force: true });
    used = undefined;
}

/** A private root with the real LibreOffice and a home that has used it. */
export class OfficeRoot {
    #root;
    #ends = [];

    static async empty() {
        const office = new OfficeRoot();
        office.#root = await SandboxRoot.create({ suite: true });
        await office.writeFile(document, 'A plan.\n');
        return office;
    }

    static async create() {
        used ??= await usedProfile();
        const office = await OfficeRoot.empty();
        fs.cpSync(used, office.hostPath('/home/user/.config'), { recursive: true });
        return office;
    }

    hostPath(inside) {
        return this.#root.hostPath(inside);
    }

    writeFile(inside, content) {
        return this.#root.writeFile(inside, content);
    }

    readFile(inside) {
        return this.#root.readFile(inside);
    }

    makeDirectory(inside) {
        return this.#root.makeDirectory(inside);
    }

    list(inside) {
        return this.#root.list(inside);
    }

    /** Shows a copy of what stands at a place on a read-only file system of its own. */
    makeReadOnly(inside) {
        const copy = path.join(this.hostPath('/tmp'), 'read-only');
        fs.cpSync(this.hostPath(inside), copy, { recursive: true });
        this.#root.bind(copy, inside);
    }

    async bindFile(inside, content) {
        const file = `/tmp/planted/${path.basename(inside)}`;
        await this.writeFile(file, content);
        // Its folder, as that of a system cannot get new files.
        if (fs.existsSync(path.dirname(inside))) {
            this.#root.bind(path.dirname(this.hostPath(file)), path.dirname(inside));
        } else {
            this.#root.bind(this.hostPath(file), inside);
        }
    }

    /** Shows a host file or directory read-only at a place of the root. */
    bind(host, inside) {
        this.#root.bind(host, inside);
    }

    /** Shows host programs beside those of /usr/bin. */
    addPrograms(programs) {
        this.#root.addPrograms(programs);
    }

    run(command, options) {
        return this.#root.run(command, options);
    }

    smallDisk(inside, bytes) {
        this.#root.smallDisk(inside, bytes);
    }

    /** Shows the installation at another place instead. */
    moveInstallation(place) {
        const nothing = path.join(this.hostPath('/tmp'), 'nothing');
        fs.mkdirSync(nothing);
        this.#root.bind('/usr/lib/libreoffice', place);
        this.#root.bind(nothing, '/usr/lib/libreoffice');
    }

    /** Shows a second installation, which says that it is of another version. */
    addInstallation(place, version) {
        const copy = path.join(this.hostPath('/tmp'), path.basename(place));
        // Its program finds its own folder: links to the first one would lead back to that.
        fs.cpSync('/usr/lib/libreoffice', copy, { recursive: true, verbatimSymlinks: true });
        const file = path.join(copy, 'program/bootstraprc');
        const content = fs.readFileSync(file, 'utf8');
        fs.rmSync(file);
        fs.writeFileSync(file, content.replace(/^(ProductKey=\D*)[0-9.]+/m, `$1${version}`));
        this.#root.bind(copy, place);
    }

    exists(inside) {
        return this.#root.exists(inside);
    }

    /** A folder that is on a server which is away, see hangingshare.mjs. */
    async addHangingShare(inside) {
        await this.makeDirectory(inside);
        this.#ends.push(await hangingShare(this.hostPath(inside)));
    }

    async dispose() {
        for (const end of this.#ends) await end();
        await this.#root.dispose();
    }

    shell(script, env = {}, timeoutMs = undefined) {
        return this.#root.run(['/bin/bash', '-c', script], { env, timeoutMs });
    }

    /** Adds an item to the settings, which LibreOffice writes one a line. */
    async addItem(item) {
        const content = await this.readFile(settings);
        fs.writeFileSync(
            this.hostPath(settings),
            content.replace('</oor:items>', `${item}</oor:items>`),
        );
    }

    /**
     * The ODF version that LibreOffice saves in: "1.2" with the settings of this home; null if it
     * saves nothing within that many seconds.
     */
    async convert({ env = {}, patience = 40 } = {}) {
        const output = '/home/user/out/plan.fodt';
        const { stderr } = await this.shell(
            `timeout -k 1 ${patience} soffice --headless --convert-to fodt --outdir /home/user/out ${document}`,
            env,
        );
        if (!(await this.exists(output))) return { version: null, stderr };
        const [, version] = (await this.readFile(output)).match(/office:version="([0-9.]+)"/);
        fs.rmSync(this.hostPath('/home/user/out'), { recursive: true });
        return { version, stderr };
    }

    /** The fonts that LibreOffice takes for a text in that font. */
    async fontsFor(family, text = 'A plan.') {
        await this.writeFile('/home/user/text.fodt', textIn(family, text));
        await this.shell(
            'timeout -k 1 60 soffice --headless --convert-to pdf --outdir /home/user /home/user/text.fodt',
        );
        const content = await this.#root.readFile('/home/user/text.pdf', 'latin1');
        const names = [...content.matchAll(/\/BaseFont\/(?:[A-Z]{6}\+)?([^/\s>]+)/g)];
        return [...new Set(names.map(([, name]) => name))];
    }

    async #doctor(args, env) {
        const { stdout } = await this.#root.run([program, 'doctor', ...args, '--json'], { env });
        return stdout
            .split('\n')
            .filter((line) => line !== '')
            .map((line) => JSON.parse(line));
    }

    /**
     * The checks of LibreOffice that found something; without those for fonts that this machine
     * may lack, unless they are asked for.
     */
    async findings(env = {}, { withFonts = false } = {}) {
        const events = await this.#doctor([], env);
        const failed = events.filter((event) => event.result === 'failed');
        if (failed.length > 0) throw new Error(JSON.stringify(failed));
        if (events.at(-1)?.type !== 'summary') throw new Error('the doctor has not looked');
        return events
            .filter((event) => event.type === 'finding' && /^libreoffice\./.test(event.check))
            .map((event) => event.check.replace('libreoffice.', ''))
            .filter((check) => withFonts || !check.startsWith('fonts-'));
    }

    async fix({ check, repair, session = {} }) {
        const wanted = repair === undefined ? [] : ['--repair', repair];
        const args = ['--fix', '--yes', ...wanted, `libreoffice.${check}`];
        const events = await this.#doctor(args, session);
        return events.filter((event) => event.type === 'repair');
    }

    async plan(check, env = {}) {
        const events = await this.#doctor(['--fix', '--dry-run', `libreoffice.${check}`], env);
        return events.filter((event) => event.type === 'change');
    }

    async undo() {
        return (await this.#doctor(['undo'])).at(-1).result;
    }

    async suites() {
        return (await this.#doctor(['--list'])).filter((event) => event.type === 'suite');
    }

    /** What LibreOffice shows in a session with windows, see windowsession.mjs. */
    async window(command, options) {
        const { stdout } = await this.#root.run(...sessionWith(command, options));
        return seenIn(stdout);
    }

    /** What a script prints in a session with windows, see windowsession.mjs. */
    async session(commands) {
        const { stdout } = await this.#root.run(...sessionOf(commands));
        return stdout;
    }

    /** Everything below a path: name → mode and content or target. */
    tree(inside, host = this.hostPath(inside), name = '') {
        const stat = fs.lstatSync(host, { throwIfNoEntry: false });
        if (stat === undefined) return {};
        const mode = (stat.mode & 0o7777).toString(8);
        if (stat.isSymbolicLink()) return { [name]: `link ${fs.readlinkSync(host)}` };
        if (stat.isFile()) return { [name]: `${mode} ${fs.readFileSync(host, 'latin1')}` };
        const below = fs
            .readdirSync(host)
            .map((entry) => this.tree(inside, path.join(host, entry), `${name}/${entry}`));
        return Object.assign({ [`${name}/`]: mode }, ...below);
    }
}
