import fs from 'node:fs';

import { allSuffixes, suffixesOfTag } from './scriptrunner.mjs';

export const templates = '/opt/orvane/office/asso_template';

/** Desktop entry of each application tag. */
export const entries = {
    shw: 'vyr-office-shw.desktop',
    tbl: 'vyr-office-tbl.desktop',
    vyr: 'vyr-office-vyr.desktop',
};
export const integrated = 'vyr-office-tessaly.desktop';

/** Application tag and suffix of each sample, in the scripts' order. */
export const samples = Object.entries(suffixesOfTag).flatMap(([tag, suffixes]) =>
    suffixes.map((suffix) => ({ tag, suffix })),
);

export const typeOf = (suffix) => `application/vyr-office${suffix}`;

/** Writes the component mode into the suite's settings. */
export function setMode(root, mode) {
    return root.writeFile(
        `${root.home}/.config/Orvane/Office.conf`,
        `[6.0]\nvyroffice\\Application%20Settings\\AppComponentMode=${mode}\n`,
    );
}

/** A simulated desktop: fakes of these tools, which record their calls. */
export async function fakeDesktop(root, tools) {
    const script = fs.readFileSync(new URL('fakedesktop.sh', import.meta.url));
    for (const tool of tools) await root.fake(tool, script);
}

/** A sample of each suffix; under fakeDesktop its content is its type. */
export async function writeSamples(root, content = typeOf) {
    for (const suffix of allSuffixes) {
        await root.writeFile(`${templates}/vyr${suffix}`, content(suffix));
    }
}

/** Sets the fake desktop's default application of a sample's type. */
export async function setDefault(root, suffix, entry) {
    await root.writeFile(`/tmp/defaults/${typeOf(suffix)}`, entry);
}

export async function setAllDefaults(root, entryOf) {
    for (const { tag, suffix } of samples) await setDefault(root, suffix, entryOf(tag));
}

/** Registers the suite's types and entries with the real desktop tools of the sandbox. */
export async function installRealDesktop(root) {
    // Other types claim some of the suffixes too. The desktop prefers the one with the highest
    // weight that fits the content, and the samples are text.
    const types = allSuffixes
        .map(
            (suffix) => `    <mime-type type="${typeOf(suffix)}">
        <comment>suite document</comment>
        <sub-class-of type="text/plain"/>
        <glob pattern="*${suffix}" weight="90"/>
    </mime-type>\n`,
        )
        .join('');
    const packageFile = `${root.home}/.local/share/mime/packages/Override.xml`;
    await root.writeFile(
        packageFile,
        `<?xml version="1.0" encoding="UTF-8"?>
<mime-info xmlns="http://www.freedesktop.org/standards/shared-mime-info">
${types}</mime-info>
`,
    );
    const updated = await root.run(['update-mime-database', `${root.home}/.local/share/mime`]);
    if (updated.status !== 0) throw new Error(updated.stderr);
    for (const entry of [...Object.values(entries), integrated, 'other.desktop']) {
        await root.writeFile(
            `/usr/share/applications/${entry}`,
            `[Desktop Entry]\nType=Application\nName=${entry}\nExec=true %f\n`,
        );
    }
}
