import fs from 'node:fs';
import path from 'node:path';
import { waitFor } from 'browser-driver';
import { expect, test } from 'vitest';

import { pageTexts } from '../page/texts.mjs';
import { patience, viewTests } from '../page/viewtest.mjs';

const texts = pageTexts.libreoffice;
const shared = viewTests();
const installed =
    '.local/share/flatpak/app/org.libreoffice.LibreOffice/current/active/files/libreoffice';
const profiles = '.var/app/org.libreoffice.LibreOffice/config/libreoffice';

/** A Flatpak of LibreOffice that is looked after, and whose program records what it is told. */
function installFake() {
    shared.writeInHome(
        `${installed}/program/bootstraprc`,
        '[Bootstrap]\nProductKey=LibreOffice 24.8\nUserInstallation=$SYSUSERCONFIG/libreoffice/4\n',
    );
    shared.writeInHome(
        '.config/office-assistant/suites/libreoffice',
        `${shared.inHome(installed)}\n`,
    );
    fs.mkdirSync(shared.inHome(profiles, '4/user'), { recursive: true });
    shared.writeInHome(
        'fakes/flatpak',
        `#!/bin/sh
printf '%s\\n' "$@" > "$HOME/started.part"
ls -d "$HOME/${profiles}"/clean-profile-* >> "$HOME/started.part"
mv "$HOME/started.part" "$HOME/started"
until [ -e "$HOME/close" ] || [ ! -d "$HOME/fakes" ]; do sleep 0.1; done
`,
        { mode: 0o755 },
    );
    return { PATH: `${shared.inHome('fakes')}:${process.env.PATH}` };
}

test('a click starts it with a clean profile, which is gone when it is closed', async () => {
    const { view } = await shared.open('libreoffice', { env: installFake() });
    await view.shows('24.8', patience);
    await view.press(texts.start.start);
    await view.shows(texts.start.started, patience);
    const words = (await shared.fileWith(shared.inHome('started'), Boolean)).trim().split('\n');
    const folder = words.at(-1);
    expect(path.dirname(folder)).toBe(shared.inHome(profiles));
    expect(words.slice(0, -1)).toEqual([
        'run',
        'org.libreoffice.LibreOffice',
        `-env:UserInstallation=file://${folder}`,
        '--norestore',
    ]);
    shared.writeInHome('close', '');
    await waitFor(() => !fs.existsSync(folder), { what: 'the profile to go', ...patience });
    expect(fs.readdirSync(shared.inHome(profiles))).toEqual(['4']);
});
