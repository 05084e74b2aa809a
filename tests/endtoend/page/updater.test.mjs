import fs from 'node:fs';
import { expect, test } from 'vitest';

import { filled, pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.updater;
const shared = viewTests();

async function openUpdater(configuration) {
    const file = shared.writeInHome('update.cfg', configuration);
    const { view } = await shared.open('updater', { env: { HELIO_UPDATE_CFG: file } });
    await view.shows(texts.tabs.configuration, patience);
    return { file, view };
}

test('an edited value of the updater is stored in its settings file', async () => {
    const { file, view } = await openUpdater('[update]\nserver=old\n[other]\nkept=1\n');
    await view.shows('old', patience);
    await view.press(filled(texts.editOne, { name: 'server' }));
    await view.fill('server', 'https://new.invalid/a b');
    await view.press(texts.save);
    await view.shows(texts.saved, patience);
    const text = await shared.fileWith(file, (found) => found.includes('https://new.invalid/a b'));
    expect(text).toContain('[other]\nkept=1');
    expect(text).not.toContain('old');
});

test('a value is stored without a change to any other byte, and only in its range', async () => {
    const before = '; why\n[update]\n; 1 to 60\ntimeout = 20\n\n[other]\nkept=a,b\n';
    const { file, view } = await openUpdater(before);
    await view.press(filled(texts.editOne, { name: 'timeout' }));
    await view.fill('timeout', '61');
    await view.shows(filled(texts.objections.number, { from: 1, to: 60 }));
    await view.fill('timeout', '30');
    await view.press(texts.save);
    await view.shows(texts.saved, patience);
    expect(fs.readFileSync(file, 'utf8')).toBe(before.replace('20', '30'));
});

test('a new key is added, and one that cannot be stored is refused', async () => {
    const { file, view } = await openUpdater('[update]\n');
    await view.fill(texts.newKey, 'a$b');
    await view.press(texts.add);
    await view.shows(texts.objections.dollar);
    await view.fill(texts.newKey, 'interval');
    await view.fill(texts.newValue, '7');
    await view.press(texts.add);
    await view.shows(texts.saved, patience);
    await shared.fileWith(file, (text) => text.includes('interval=7'));
});

test('a machine without an updater gets an explanation', async () => {
    const { view } = await shared.open('updater', {
        env: { HELIO_UPDATE_CFG: shared.inHome('none.cfg') },
    });
    await view.shows(texts.support.noConfiguration, patience);
    await view.shows(texts.noConfiguration);
});
