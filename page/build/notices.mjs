import { readFile, readdir } from 'node:fs/promises';
import { join } from 'node:path';

const licenceFile = /^(licen[cs]e|copying|notice)/i;

/** The directory of the package that a module belongs to; null for modules of our own. */
function packageOf(module) {
    const [file] = module.replace(/^\0/, '').split('?');
    const inside = file.lastIndexOf('/node_modules/');
    if (inside < 0) return null;
    const name = /^(@[^/]+\/)?[^/]+/.exec(file.slice(inside + '/node_modules/'.length))[0];
    return join(file.slice(0, inside), 'node_modules', name);
}

async function noticeOf(folder) {
    const { name, version, license } = JSON.parse(
        await readFile(join(folder, 'package.json'), 'utf8'),
    );
    const files = (await readdir(folder)).filter((file) => licenceFile.test(file)).sort();
    const texts = await Promise.all(files.map((file) => readFile(join(folder, file), 'utf8')));
    const text = texts.length ? texts.join('\n') : `Its package has no licence file.\n`;
    return { name, text: `${name} ${version} (${license})\n\n${text.replace(/\r/g, '').trim()}\n` };
}

/**
 * The licence notices of everything that the page is made of: of this project, whose licence is
 * `ownLicence`, and of the packages that `modules` come from.
 */
export async function collectNotices(ownLicence, modules) {
    const folders = new Set(modules.map(packageOf).filter(Boolean));
    const notices = await Promise.all([...folders].map(noticeOf));
    notices.sort((one, other) => (one.name < other.name ? -1 : 1));
    const own = `Office Assistant\n\n${(await readFile(ownLicence, 'utf8')).trim()}\n`;
    return [own, ...notices.map(({ text }) => text)].join(`\n${'-'.repeat(72)}\n\n`);
}
