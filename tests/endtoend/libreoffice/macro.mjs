import { profile } from './officeroot.mjs';

const folder = `${profile}/basic`;
const said = '/home/user/said';

const escaped = (text) =>
    text.replaceAll('&', '&amp;').replaceAll('<', '&lt;').replaceAll('"', '&quot;');

const dialect = (root) =>
    `<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE ${root} PUBLIC "-//OpenOffice.org//DTD OfficeDocument 1.0//EN" "x.dtd">
`;

const libraries = `${dialect('library:libraries')}<library:libraries
 xmlns:library="http://openoffice.org/2000/library" xmlns:xlink="http://www.w3.org/1999/xlink">
<library:library library:name="Standard" xlink:href="$(USER)/basic/Standard/script.xlb/"
 xlink:type="simple" library:link="false"/></library:libraries>
`;

const library = `${dialect('library:library')}<library:library
 xmlns:library="http://openoffice.org/2000/library" library:name="Standard"
 library:readonly="false" library:passwordprotected="false">
<library:element library:name="Look"/></library:library>
`;

const module = (statements) => `${dialect('script:module')}<script:module
 xmlns:script="http://openoffice.org/2000/script" script:name="Look" script:language="StarBasic">${escaped(
     `Sub Main
On Error Resume Next
Open "${said}" For Output As #1
${statements}
Close #1
StarDesktop.terminate()
End Sub
`,
 )}</script:module>
`;

/**
 * What statements in Basic print to "#1" in the real LibreOffice, without windows. An error ends a
 * statement, and no more.
 */
export async function saidBy(office, statements, env = {}) {
    await office.writeFile(`${folder}/script.xlc`, libraries);
    await office.writeFile(`${folder}/Standard/script.xlb`, library);
    await office.writeFile(`${folder}/Standard/Look.xba`, module(statements));
    await office.shell(
        `rm -f ${said}; timeout -k 1 60 soffice --headless --norestore 'macro:///Standard.Look.Main'`,
        env,
    );
    return (await office.exists(said)) ? (await office.readFile(said)).trim() : null;
}

/** The seconds that the processor works for a command, which waiting does not count for. */
export async function workOf(office, command) {
    const { stdout } = await office.shell(
        `TIMEFORMAT='%U %S'; { time timeout -k 1 120 ${command} >/dev/null 2>&1; } 2>&1`,
    );
    const [user, system] = stdout.trim().split(' ').map(Number);
    return user + system;
}
