import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { beforeEach, expect, test } from 'vitest';

import { windowTests } from './windowtest.mjs';

const shared = windowTests();
let program;
let page;

async function startProgram() {
    program = await shared.start();
    page = await program.page();
    await page.until('Boolean(window.helio)');
}

beforeEach(async () => {
    const checks = path.join(shared.suite.home, '.config/office-assistant/checks.d');
    fs.mkdirSync(checks, { recursive: true });
    const check = {
        id: 'own.list',
        title: { en: 'There is a list', zh_CN: '有列表' },
        look: { file: '$HOME/list', exists: false },
        finding: { text: { en: '{path} is missing.', zh_CN: '缺少 {path}。' } },
        repairs: [
            { id: 'make', title: 'Make the list', steps: [{ write: '{path}', content: 'one\n' }] },
        ],
    };
    fs.writeFileSync(path.join(checks, 'own.json'), JSON.stringify(check));
    await startProgram();
});

/** Calls an operation: {lines, result} or {lines, error}. */
function operate(name, args) {
    return page.evaluate(`(async () => {
        const lines = [];
        const listen = (line) => lines.push(line);
        try {
            const { result } = await helio.call(${JSON.stringify(`doctor.${name}`)},
                ${JSON.stringify(args)}, listen);
            return { lines, result };
        } catch (error) {
            return { lines, error: error.message };
        }
    })()`);
}

const lookAtOwn = (language) => operate('look', { checks: ['own.list'], language });

test('a page learns which operations its shell has', async () => {
    const doctor = [
        ...['list', 'look', 'checkups', 'plan', 'fix', 'undo', 'history'],
        ...['preview', 'watch', 'watched'],
    ].map((name) => `doctor.${name}`);
    const why = ['open', 'denied', 'input'].map((name) => `why.${name}`);
    const suite = ['describe', 'choose', 'plan', 'start'].map((name) => `suite.${name}`);
    const draft = ['keep', 'picture', 'read', 'receiver', 'write'].map((name) => `draft.${name}`);
    const window = [
        ...['action', 'dropped', 'expect', 'find'],
        ...['leave', 'maximise', 'sidebar', 'state'],
    ].map((name) => `window.${name}`);
    const tasks = [
        ...['cancel', 'findings', 'printed'],
        ...['report', 'save', 'archive', 'check', 'print', 'fonts', 'substitutes'],
        ...['server', 'system', 'input', 'shortcuts', 'associations', 'associate'],
        ...['paths', 'choose', 'listing', 'dumps', 'dumpfolder'],
        ...['compare', 'start', 'updater'],
        ...['processes', 'programs', 'machine', 'request', 'preview', 'end'],
    ].map((name) => `task.${name}`);
    expect(await page.evaluate('helio.operations')).toEqual([
        ...doctor,
        ...why,
        ...suite,
        'doctor.cancel',
        ...tasks,
        ...draft,
        ...window,
    ]);
});

test('the shipped checks are listed with those of the user', async () => {
    const { result } = await operate('list', { language: 'en' });
    const ids = result.checks.map(({ check }) => check);
    expect(ids).toContain('own.list');
    expect(ids).toContain('permissions.foreign');
    expect(result.mistakes).toEqual([]);
});

test('findings come before the end, in the language that the page asks for', async () => {
    const list = path.join(shared.suite.home, 'list');
    const { lines, result } = await lookAtOwn('zh-CN');
    expect(lines).toMatchObject([
        { type: 'check', check: 'own.list', result: 'finding' },
        { type: 'finding', text: `缺少 ${list}。`, where: [{ path: list }], repairs: ['make'] },
    ]);
    expect(result).toEqual({ type: 'summary', checks: 1, findings: 1, failed: 0 });
});

test('all checks run beside the commands, and each is heard of', async () => {
    const [{ lines, result }, command] = await Promise.all([
        operate('look', {}),
        page.call('getcollectionpage'),
    ]);
    expect(command).toEqual({ result: { page: '' } });
    expect(lines.filter(({ type }) => type === 'check')).toHaveLength(result.checks);
    expect(result.checks).toBeGreaterThan(20);
});

test('a repair is planned, made, listed and undone', async () => {
    const list = path.join(shared.suite.home, 'list');
    const [, { finding }] = (await lookAtOwn('en')).lines;
    const { result: plan } = await operate('plan', { findings: [finding], repair: 'make' });
    expect(plan.changes).toMatchObject([{ kind: 'create', path: list, needs: 'user' }]);
    expect(fs.existsSync(list)).toBe(false);
    const { result: made } = await operate('fix', { plan: plan.plan });
    expect(made).toMatchObject({ result: 'repaired' });
    expect(fs.readFileSync(list, 'utf8')).toBe('one\n');
    const { result: history } = await operate('history');
    expect(history.entries.at(-1)).toMatchObject({ journal: made.journal, state: 'applied' });
    expect(await operate('undo', { journal: made.journal })).toMatchObject({
        result: { result: 'undone', kept: [] },
    });
    expect(fs.existsSync(list)).toBe(false);
});

test('what a command changed before the program was killed is found and undone', async () => {
    const settings = path.join(shared.suite.home, '.config/Orvane/Office.conf');
    fs.mkdirSync(path.dirname(settings), { recursive: true });
    fs.writeFileSync(settings, '[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
    const { result: begun } = await operate('watch', { command: 'startDump' });
    expect(begun).toMatchObject({ refusal: '' });
    await page.call('startDump');
    expect(fs.readFileSync(settings, 'utf8')).toContain('SaveDump=true');
    program.signal('SIGKILL');
    await program.waitForExit();

    await startProgram();
    const { lines, result } = await operate('history');
    expect(lines).toMatchObject([
        { type: 'note', text: expect.stringContaining('"startDump" was interrupted') },
    ]);
    expect(result.entries.at(-1)).toMatchObject({
        journal: begun.journal,
        repair: 'startDump',
        state: 'applied',
        paths: [settings],
    });
    await operate('undo', { journal: begun.journal });
    expect(fs.readFileSync(settings, 'utf8')).toBe('[6.0]\ncommon\\CrashDump\\SaveDump=false\n');
});

test('a request that makes no sense is refused', async () => {
    expect((await operate('none')).error).toContain('doctor.none');
    expect((await operate('look', { checks: ['none'] })).error).toContain('none');
    const forged = { findings: [{ path: '/etc/passwd' }], repair: 'make' };
    expect((await operate('plan', forged)).error).toBeTruthy();
});

test('a frame has nothing of it', async () => {
    const report = await page.evaluate(`new Promise((resolve) => {
        addEventListener('message', ({ data }) => resolve(data));
        document.body.append(
            Object.assign(document.createElement('iframe'), { src: 'frame.html' }));
    })`);
    expect(report).toEqual({ helio: 'undefined', channel: 'undefined', transport: 'undefined' });
});

test('a document of another origin is refused', async () => {
    const list = path.join(shared.suite.home, 'list');
    const [, { finding }] = (await lookAtOwn('en')).lines;
    const { result: plan } = await operate('plan', { findings: [finding], repair: 'make' });
    await page.evaluate("void (location.href = 'about:blank')");
    await page.until("location.href === 'about:blank'");
    expect(await page.evaluate('typeof helio')).toBe('undefined');
    const call = JSON.stringify({ command: 'doctor.fix', args: { plan: plan.plan } });
    const message = { type: 6, id: 1, object: 'wire', method: 'fromJSAsynCall', args: [call] };
    await page.evaluate(
        `void qt.webChannelTransport.send(${JSON.stringify(JSON.stringify(message))})`,
    );
    await waitFor(() => /was refused/.test(program.stderr), { what: 'the refusal' });
    expect(fs.existsSync(list)).toBe(false);
});
