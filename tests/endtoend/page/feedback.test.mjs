import fs from 'node:fs';
import path from 'node:path';
import { expect, test } from 'vitest';

import { archived } from './archive.mjs';
import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.feedback;
const shared = viewTests();

/** A feedback view with a description entered. */
async function described() {
    const { view } = await shared.open('feedback');
    await view.press(texts.categories.print);
    await view.fill(texts.description, 'The third page\nis empty');
    return view;
}

async function attach(view, name, file) {
    await view.press(name);
    await shared.choose('Open File', file);
}

test('the archive holds what was chosen, and nothing that was not', async () => {
    const sample = shared.writeInHome('sample.docx', 'a sample');
    const picture = shared.writeInHome('picture.png', 'a picture');
    shared.writeInHome('.config/Orvane/Office.conf', '[6.0]\nlook=dark\n');
    shared.writeInHome('.local/share/Orvane/tmp/dump/vyr_17.dmp', 'a dump');
    const view = await described();
    await attach(view, texts.files.chooseSample, sample);
    await view.shows(texts.added, patience);
    await attach(view, texts.files.attach, picture);
    await view.shows('picture.png', patience);
    await view.press(texts.extras.systemInformation.title);
    await view.press(texts.build);
    await shared.choose('Save File', shared.inHome('problem'));
    await view.shows(texts.archive.there, patience);
    await view.shows(shared.inHome('problem.tar.gz'));

    const files = await archived(shared.inHome('problem.tar.gz'));
    expect([...files.keys()].sort()).toEqual(
        expect.arrayContaining(['Office.conf', 'describe.txt', 'picture.png', 'sample.docx']),
    );
    expect([...files.keys()].filter((name) => /\.dmp$|^sysinfo/.test(name))).toEqual([]);
    expect(files.get('sample.docx')).toBe('a sample');
    expect(files.get('describe.txt')).toContain('describe: The third page is empty\n');
    // Its folder, from where it can be attached.
    await shared.fileWith(shared.inHome('opened'), (text) =>
        text
            .split('\n')
            .some((line) => line.replace(/^file:\/\//, '') === path.dirname(shared.inHome('x'))),
    );
});

test('line breaks and a pasted screenshot are in the archive, which goes where it should', async () => {
    const { view } = await shared.open('feedback', {
        env: { HELIO_FEEDBACK_ADDRESS: 'mailto:support@example.org' },
    });
    await view.fill(texts.description, 'First line\n\nthird   line');
    await view.evaluate(`void (async () => {
        const canvas = document.createElement('canvas');
        const blob = await new Promise((done) => canvas.toBlob(done, 'image/png'));
        const clipboardData = new DataTransfer();
        clipboardData.items.add(new File([blob], 'image.png', { type: 'image/png' }));
        document.body.dispatchEvent(new ClipboardEvent('paste',
            { clipboardData, bubbles: true, cancelable: true }));
    })()`);
    await view.shows('screenshot-', patience);
    await view.until("document.querySelector('.file-look img')?.naturalWidth > 0", patience);
    await view.press(texts.build);
    await shared.choose('Save File', shared.inHome('problem'));
    await view.shows(texts.archive.there, patience);
    await view.shows('support@example.org');
    const files = await archived(shared.inHome('problem.tar.gz'));
    expect(files.get('description.txt')).toBe('First line\n\nthird   line');
    expect(files.get('describe.txt')).toContain('describe: First line third line\n');
    expect([...files.keys()].some((name) => /^screenshot-.*png$/.test(name))).toBe(true);
    await view.press(texts.receiver.write);
    const address = 'mailto:support@example.org';
    // Nothing else has been opened, not even the archive's folder.
    expect((await shared.fileWith(shared.inHome('opened'), Boolean)).trim()).toBe(address);
});

test('system report and dumps are included on request', async () => {
    shared.writeInHome('.local/share/Orvane/tmp/dump/vyr_17.dmp', 'a dump');
    const view = await described();
    await view.press(texts.extras.crashDumps.title);
    await view.press(texts.build);
    await shared.choose('Save File', shared.inHome('whole'));
    await view.shows(texts.archive.there, patience);
    const files = await archived(shared.inHome('whole.tar.gz'));
    expect([...files.keys()]).toEqual(expect.arrayContaining(['sysinfo.txt', 'vyr_17.dmp']));
    expect(files.get('sysinfo.txt')).toContain('suite-begin');
});

test('a file of any name is in the archive, and none is run', async () => {
    const view = await described();
    const name = 'my $(touch ran);`touch ran`&.txt';
    await attach(view, texts.files.attach, shared.writeInHome(name, 'x'));
    await view.shows(texts.added, patience);
    await view.press(texts.build);
    await shared.choose('Save File', shared.inHome('a b.tar.gz'));
    await view.shows(texts.archive.there, patience);
    expect((await archived(shared.inHome('a b.tar.gz'))).get(name)).toBe('x');
    expect(fs.existsSync(shared.inHome('ran'))).toBe(false);
});

test('an archive to a place that cannot be written ends with the reason', async () => {
    const view = await described();
    await view.press(texts.build);
    await shared.choose('Save File', '/proc/problem.tar.gz');
    await view.shows('/proc/problem.tar.gz cannot be written', patience);
});

test('without a name for the archive nothing is built, and the view says so', async () => {
    const view = await described();
    await view.press(texts.build);
    await shared.display.focused(await shared.display.dialog('Save File'));
    await shared.display.act('key', 'Escape');
    await view.shows(texts.notBuilt, patience);
});
