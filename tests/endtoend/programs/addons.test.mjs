import fs from 'node:fs';

import { afterEach, beforeEach, expect, test } from 'vitest';

import { beside, displayAndBus } from '../beside.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';

const tool = '/suite/office/eptools';
const profile = '/home/user/.config/libreoffice/4/user';
const patience = 120_000;

/** Extensions as a real one is packed: one that works, and one whose Java part cannot. */
const makeExtensions = `
import zipfile
def pack(name, kind, content, needs=''):
    with zipfile.ZipFile(f'/tmp/{name}.oxt', 'w') as z:
        z.writestr('description.xml', f'''<description
            xmlns="http://openoffice.org/extensions/description/2006"
            xmlns:l="http://libreoffice.org/extensions/description/2011">
            <identifier value="org.example.{name}"/><version value="1.2"/>{needs}</description>''')
        z.writestr('META-INF/manifest.xml', f'''<manifest:manifest
            xmlns:manifest="http://openoffice.org/2001/manifest"><manifest:file-entry
            manifest:media-type="application/vnd.sun.star.{kind}"
            manifest:full-path="part.xcu"/></manifest:manifest>''')
        z.writestr('part.xcu', content)
pack('good', 'configuration-data', '''<oor:component-data
    xmlns:oor="http://openoffice.org/2001/registry" oor:package="org.openoffice.Office"
    oor:name="Common"/>''', '<l:LibreOffice-minimal-version value="5.0"/>')
pack('java', 'uno-component;type=Java', 'no archive')
`;
const library = `<?xml version="1.0"?>
<!DOCTYPE library:library PUBLIC "-//OpenOffice.org//DTD OfficeDocument 1.0//EN" "library.dtd">
<library:library xmlns:library="http://openoffice.org/2000/library" library:name="Standard">
<library:element library:name="Letters"/><library:element library:name="Gone"/>
</library:library>`;
const module = `<?xml version="1.0"?>
<script:module xmlns:script="http://openoffice.org/2000/script" script:name="Letters">
' see https://example.org
Sub Main
    Shell(&quot;/bin/true&quot;)
End Sub
</script:module>`;
const libraries = `<?xml version="1.0"?>
<library:libraries xmlns:library="http://openoffice.org/2000/library"
    xmlns:xlink="http://www.w3.org/1999/xlink">
<library:library library:name="Standard" xlink:href="$(USER)/basic/Standard/script.xlb/"/>
<library:library library:name="Tools" xlink:href="$(INST)/share/basic/Tools/script.xlb/"/>
</library:libraries>`;
const event = (name, macro) =>
    `<item oor:path="/org.openoffice.Office.Events/ApplicationEvents/Bindings/` +
    `org.openoffice.Office.Events:BindingType['${name}']"><prop oor:name="BindingURL" ` +
    `oor:op="fuse"><value>vnd.sun.star.script:Standard.${macro}?language=Basic&amp;` +
    `location=application</value></prop></item>\n`;

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

test('extensions, macros and events are listed with what they use, and what fails first', async () => {
    await root.writeFile('/tmp/make.py', makeExtensions);
    await root.writeFile(
        '/tmp/script.sh',
        'python3 /tmp/make.py && unopkg add /tmp/good.oxt; unopkg add /tmp/java.oxt',
    );
    await root.run(['bash', '/tmp/script.sh'], { timeoutMs: patience });
    await root.writeFile(`${profile}/basic/script.xlc`, libraries);
    await root.writeFile(`${profile}/basic/Standard/script.xlb`, library);
    await root.writeFile(`${profile}/basic/Standard/Letters.xba`, module);
    await root.writeFile(`${profile}/Scripts/python/fetch.py`, 'import urllib.request\n');
    const settings = `${profile}/registrymodifications.xcu`;
    const items = event('OnStartApp', 'Letters.Main') + event('OnNew', 'Old.Main');
    await root.writeFile(settings, `<oor:items>\n${items}</oor:items>\n`);

    const end = await root.run([tool, '-apilog'], { timeoutMs: patience });
    expect(end).toMatchObject({ status: 0, stderr: '' });
    const own = (name) => `  ${name} (installed by you)\n`;
    const below = (section) => end.stdout.split(`${section}\n`)[1];
    expect(below('Extensions')).toMatch(
        new RegExp(
            `^  org\\.example\\.java 1\\.2 \\(installed by you\\)\n +/.+/java\\.oxt\n` +
                ` +runs Java code\n +Fault: it is not registered, so nothing of it runs\n` +
                `  org\\.example\\.good 1\\.2 \\(installed by you\\)\n +/.+/good\\.oxt\n` +
                ` +needs LibreOffice 5\\.0 or newer\n +changes settings\nMacros`,
        ),
    );
    const macros = [
        own('Standard'),
        `      ${profile}/basic/Standard\n`,
        '      starts other programs\n',
        '      Fault: the module Gone is missing or damaged\n',
        own('fetch.py'),
        `      ${profile}/Scripts/python/fetch.py\n`,
        '      runs Python code\n',
        '      uses addresses of the network\n',
    ].join('');
    expect(below('Macros').slice(0, macros.length)).toBe(macros);
    expect(below('Macros')).toContain('  Tools (comes with LibreOffice)\n');
    const address = (macro) =>
        `      vnd.sun.star.script:Standard.${macro}?language=Basic&location=application\n`;
    const events = [
        own('OnNew'),
        address('Old.Main'),
        '      Fault: the macro that it starts is not there\n',
        own('OnStartApp'),
        address('Letters.Main'),
    ].join('');
    expect(below('Events that start a macro').split('Log of')[0]).toBe(events);
    expect(below('Log of the extension manager')).toContain('ERROR: unopkg failed.');
});

test('a list of extensions that is too big to read is named as that', async () => {
    const cache = `${profile}/uno_packages/cache`;
    await root.writeFile(`${cache}/uno_packages/lu1_/tidy.oxt/description.xml`, '<description/>');
    const list = `${cache}/registry/com.sun.star.comp.deployment.bundle.PackageRegistryBackend/backenddb.xml`;
    await root.writeFile(list, '');
    fs.truncateSync(root.hostPath(list), 17 << 20);
    const end = await root.run([tool, '-apilog']);
    expect(end.stdout).toContain('Fault: whether it is registered cannot be read: ');
    expect(end.stdout).not.toContain('it is not registered');
});

test('its window is what the command opens', async () => {
    const prepared = await beside(root, displayAndBus);
    const window = (name) =>
        `timeout 30 xdotool search --sync --onlyvisible --name "${name}" > /dev/null && echo shown\n`;
    await root.writeFile(
        '/tmp/script.sh',
        `/suite/office/assistantctl apilog > /dev/null
${window('Extensions and macros of LibreOffice')}
/suite/office/assistantctl contentreplace > /dev/null
${window('Replace text in documents')}`,
    );
    const end = await prepared.run(['bash', '/tmp/script.sh'], { timeoutMs: patience });
    expect(end.stdout).toBe('shown\nshown\n');
});
