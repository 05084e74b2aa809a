import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const shared = viewTests();

const right = '[Desktop Entry]\nType=Application\nName=right\nExec=true %f\n';

/**
 * Has the window start in processes of its own, without root's rights, with the test's home as the
 * user's; `before`: lines of a shell script that start other programs of the session.
 */
function confine(before = []) {
    const { suite } = shared;
    const inside = path.join(suite.directory, 'session');
    fs.writeFileSync(
        inside,
        ['#!/bin/sh', ...before, `exec ${suite.program} "$@"`, ''].join('\n'),
        { mode: 0o755 },
    );
    const outside = path.join(suite.directory, 'confined');
    const words = [
        'exec bwrap --dev-bind / / --unshare-pid --proc /proc --cap-drop ALL --die-with-parent',
        `--bind ${suite.home} ${os.userInfo().homedir} ${inside} "$@"`,
    ];
    fs.writeFileSync(outside, `#!/bin/sh\n${words.join(' ')}\n`, { mode: 0o755 });
    suite.program = outside;
}

/** Makes the repair that is offered for a thing. */
async function fix(view, what) {
    const { fixThis, confirm } = pageTexts.offer;
    await view.press(filled(fixThis, { what }), patience);
    await view.shows(pageTexts.changes.lead);
    await view.press(confirm);
}

async function undo(view, title) {
    await view.press(filled(pageTexts.undo.undoThis, { what: title }), patience);
    await view.shows(filled(pageTexts.undo.undone, { what: title }), patience);
}

test('the line that decides what opens a document is shown, fixed and restored', async () => {
    const texts = pageTexts.associations;
    const mime = 'application/vnd.openxmlformats-officedocument.wordprocessingml.document';
    const applications = '.local/share/applications';
    const before = `# mine\n[Default Applications]\n${mime}=lost.desktop\n`;
    const list = shared.writeInHome('.config/mimeapps.list', before);
    shared.writeInHome(`${applications}/right.desktop`, right);
    shared.writeInHome(`${applications}/mimeinfo.cache`, `[MIME Cache]\n${mime}=right.desktop;\n`);
    const { view } = await shared.open('associations');
    await view.press(filled(texts.why.showThis, { extension: '.docx' }), patience);
    await view.shows(`${list}, line 3 names lost.desktop, but it is not installed.`, patience);
    await view.shows(`${shared.inHome(applications, 'mimeinfo.cache')}:2`);

    await fix(view, filled(texts.why.fixWhat, { extension: '.docx' }));
    await view.shows(texts.why.fixed, patience);
    expect(fs.readFileSync(list, 'utf8')).toBe(
        before.replace('lost.desktop', 'right.desktop;lost.desktop;'),
    );
    await view.shows(`${list}:3`);
    await undo(view, texts.title);
    expect(fs.readFileSync(list, 'utf8')).toBe(before);
});

test('the part that blocks a configuration file is shown, opened and closed again', async () => {
    const texts = pageTexts.permissions;
    const file = shared.writeInHome('.config/Orvane/Office.conf', 'a=1\n', { mode: 0o440 });
    const modeOf = () => fs.statSync(file).mode & 0o7777;
    confine();
    const { view } = await shared.open('permissions');
    await view.shows(`${file} -r--r----- (0440)`, patience);
    await view.shows(texts.why.blocks);

    await fix(view, filled(texts.why.fixWhat, { name: 'Office.conf' }));
    await view.shows(texts.why.fixed, patience);
    await view.hides(texts.why.blocks);
    expect(modeOf()).toBe(0o640);
    await undo(view, texts.title);
    await view.shows(texts.why.blocks, patience);
    expect(modeOf()).toBe(0o440);
    expect(fs.readFileSync(file, 'utf8')).toBe('a=1\n');
});

test('the permissions of an added file are fixed from its card', async () => {
    const texts = pageTexts.permissions;
    const file = shared.writeInHome('my closed.conf', 'a=1\n', { mode: 0o440 });
    confine();
    const { view } = await shared.open('permissions');
    await view.shows('.config', patience);
    await view.press(texts.add);
    await shared.choose('Open File', file);
    await view.shows(`${file} -r--r----- (0440)`, patience);
    await fix(view, filled(texts.why.fixWhat, { name: 'my closed.conf' }));
    await view.shows(texts.why.fixed, patience);
    expect(fs.statSync(file).mode & 0o7777).toBe(0o640);
});

test('the line that sets the wrong input method is shown, fixed and restored', async () => {
    const texts = pageTexts.inputmethod;
    const before = '# mine\nexport XMODIFIERS=@im=fcitx\n';
    const profile = shared.writeInHome('.profile', before);
    const { fakes } = shared.suite;
    for (const name of ['openbox', 'ibus-daemon']) {
        fs.copyFileSync('/bin/sleep', path.join(fakes, name));
    }
    confine([`${fakes}/openbox 600 &`, `${fakes}/ibus-daemon 600 &`]);
    const { view } = await shared.open('inputmethod', {
        env: { XMODIFIERS: '@im=fcitx', LANG: 'zh_CN.UTF-8' },
    });
    await view.shows(`${path.join(os.userInfo().homedir, '.profile')}:2`, patience);

    await fix(view, texts.why.fixWhat);
    await view.shows(texts.why.fixed, patience);
    expect(fs.readFileSync(profile, 'utf8')).toBe(before.replace('@im=fcitx', '@im=ibus'));
    await undo(view, texts.title);
    expect(fs.readFileSync(profile, 'utf8')).toBe(before);
});

test.each([
    ['none is needed', {}, true, []],
    ['none is set for Chinese', { LANG: 'zh_CN.UTF-8' }, false, []],
    [
        'the one that is set does not run',
        { QT_IM_MODULE: 'fcitx', XMODIFIERS: '@im=fcitx' },
        false,
        [],
    ],
    ['one runs that no variable names', {}, false, ['fcitx5']],
])('where %s, input method and environment check agree', async (_, env, isWell, running) => {
    const { inputmethod: input, environmentcheck } = pageTexts;
    const { fakes } = shared.suite;
    const programs = ['openbox', ...running].map((name) => path.join(fakes, name));
    for (const program of programs) fs.copyFileSync('/bin/sleep', program);
    confine(programs.map((program) => `${program} 600 &`));
    const { home, view } = await shared.open('inputmethod', { env });
    await view.shows(input.checked, patience);
    const wrong = Object.entries(input.answers).filter(([code]) => code !== 'ERR_OK');
    await view.showsOneOf(isWell ? [input.unneeded.title] : wrong.map(([, { title }]) => title));

    await home.press(environmentcheck.title);
    const checks = await shared.view('environmentcheck');
    await checks.press(environmentcheck.checks.input.name, patience);
    await checks.press(environmentcheck.start);
    await checks.until("document.querySelector('.finding-lines') !== null", patience);
    const lines = await checks.evaluate("document.querySelector('.finding-lines').innerText");
    expect(/✘/u.test(lines), lines).toBe(!isWell);
});
