import fs from 'node:fs';
import path from 'node:path';

import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const toolName = 'vyrEnvCheckTool';
/** Records its arguments, waits for the file “go”, and answers for its component. */
const toolScript = `#!/bin/bash
printf '%s|' "$@" >> "$HOME/toolcalls"
for ((tries = 0; tries < 4500; tries++)); do
    [ -e "$HOME/go" ] && break
    sleep 0.02
done
mkdir -p "$HOME/.local/share/Orvane/tmp"
printf '[vyrEnv]\\n%s-%s=libexample is missing\\n' "$2" "$1" > "$HOME/.local/share/Orvane/tmp/vyrEnv.ini"
`;
/** Answers at once that all is well but one thing, and hangs at its second call without “go”. */
const everyScript = `#!/bin/bash
echo "$1|$2" >> "$HOME/toolcalls"
if [ ! -e "$HOME/go" ] && [ "$(wc -l < "$HOME/toolcalls")" -gt 1 ]; then exec sleep 600; fi
answer='✔ No problem was found.'
[ "$1|$2" = 'printing|tbl' ] && answer='✘ No printer. Try “sudo systemctl start cups”.'
mkdir -p "$HOME/.local/share/Orvane/tmp"
printf '[vyrEnv]\\n%s-%s="%s"\\n' "$2" "$1" "$answer" > "$HOME/.local/share/Orvane/tmp/vyrEnv.ini"
`;
const environment = pageTexts.environmentcheck;
const input = pageTexts.inputmethod;
const shared = viewTests();

test('an environment check runs the tool once and shows what it found', async () => {
    shared.writeInOffice(toolName, toolScript, { mode: 0o755 });
    const { view } = await shared.open('environmentcheck');
    await view.shows(environment.none, patience);
    await view.press(environment.components.tbl);
    await view.press(environment.start);
    await shared.fileWith(shared.inHome('toolcalls'), (text) => text !== '');
    await view.until(`[...document.querySelectorAll('button')].find((button) =>
        button.textContent.trim() === ${JSON.stringify(environment.start)}).ariaDisabled === 'true'`);
    shared.writeInHome('go', '');
    await view.shows('libexample is missing', patience);
    await view.shows(`${environment.components.tbl} – ${environment.checks.libraries.name}`);
    expect(await shared.fileWith(shared.inHome('toolcalls'), Boolean)).toBe('libraries|tbl||');
});

test('everything is checked for all programs, the worst first, and can be cancelled', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName), { force: true });
    shared.writeInOffice(toolName, everyScript, { mode: 0o755 });
    const { view } = await shared.open('environmentcheck');
    await view.press(environment.everything);
    await shared.fileWith(shared.inHome('toolcalls'), (text) => text.split('\n').length > 2);
    await view.press(pageTexts.common.cancel, patience);
    await view.shows(filled(environment.everythingStopped, { number: 1, all: 30 }), patience);

    shared.writeInHome('go', '');
    await view.press(environment.everything);
    await view.shows(environment.everythingFound.split(' | ')[0], patience);
    const [first] = await view.evaluate(
        "[...document.querySelectorAll('.finding-card')].map((card) => card.innerText)",
    );
    expect(first).toContain(`${environment.components.tbl} – ${environment.checks.printing.name}`);
    expect(first).toContain('✘ No printer.');
    expect(first).toContain('sudo systemctl start cups');
    const calls = fs.readFileSync(shared.inHome('toolcalls'), 'utf8').trim().split('\n').slice(2);
    expect(new Set(calls).size).toBe(30);
});

test('the findings of the project’s own check tool are shown line by line', async () => {
    const { view } = await shared.open('environmentcheck');
    await view.press(environment.checks.dbus.name);
    await view.press(environment.start);
    await view.shows('✘ One problem was found.', patience);
    await view.shows('✘ The session bus at disabled: does not answer:');
    expect(
        await view.evaluate(`[...document.querySelectorAll('.finding-lines p')]
        .every((line) => /^[✔⚠✘] /u.test(line.textContent))`),
    ).toBe(true);
});

test('a check whose tool is killed shows the fault and no earlier answer', async () => {
    const suite = '.local/share/Orvane/tmp/vyrEnv.ini';
    shared.writeInHome(suite, '[vyrEnv]\nvyr-libraries=\u2714 No problem was found.\n');
    fs.rmSync(path.join(shared.suite.office, toolName));
    shared.writeInOffice(toolName, '#!/bin/sh\nkill -KILL $$\n', { mode: 0o755 });
    const { view } = await shared.open('environmentcheck');
    await view.press(environment.start);
    await view.shows(environment.failed, patience);
    await view.shows('was ended by a signal');
    expect(await view.text()).not.toContain('No problem was found');
});

test('a check that hangs is cancelled with its tool, and the next one can start', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName));
    shared.writeInOffice(toolName, '#!/bin/sh\nexec sleep 600\n', { mode: 0o755 });
    const { view } = await shared.open('environmentcheck');
    await view.press(environment.start);
    await view.press(pageTexts.common.cancel, patience);
    await view.shows(pageTexts.failure.stopped, patience);
    expect(await view.evaluate("document.querySelector('.failure-notice')")).toBe(null);
    shared.writeInHome('go', '');
    shared.writeInOffice(toolName, toolScript);
    await view.press(environment.start);
    await view.shows('libexample is missing', patience);
});

test('an environment check without its tool explains why there is no answer', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName));
    const { view } = await shared.open('environmentcheck');
    await view.press(environment.start);
    await view.shows('vyrEnvCheckTool cannot be started', patience);
});

test('an unset input method is no alarm, and has the steps that set one up', async () => {
    const { view } = await shared.open('inputmethod', { env: { XMODIFIERS: '@im=fcitx' } });
    await view.shows(input.unneeded.title, patience);
    await view.shows(input.steps.install);
    await view.shows('@im=fcitx', patience);
    await view.press(pageTexts.common.check);
    await view.shows(input.checked, patience);
});

test('an input method that needs no program of its own is ready', async () => {
    const { view } = await shared.open('inputmethod', {
        env: { QT_IM_MODULE: 'xim', XMODIFIERS: '@im=fcitx' },
    });
    await view.shows(input.answers.ERR_OK.title, patience);
});
