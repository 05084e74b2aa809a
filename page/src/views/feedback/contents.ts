import { archiveNames, ownFiles, settingFiles } from '@/client';
import { fileName } from '@/parts/documenttypes';
import type { Draft } from './draft';

/** Why a file will not be in the archive as it should, by the name of its text. */
type FileProblem = 'blank' | 'semicolon' | 'sameName' | 'reserved';

/** The same, or that no archive can have it because it is not there. */
type ContentProblem = FileProblem | 'gone';

/**
 * The library splits its list of files at ";" and at spaces, so a path must not contain them. All
 * files are in one folder of the archive.
 */
export function fileProblem(path: string, earlier: string[]): FileProblem | null {
    if (path.includes(';')) return 'semicolon';
    if (/[ \t\n]/.test(path)) return 'blank';
    const name = fileName(path);
    if (ownFiles.includes(name)) return 'reserved';
    return earlier.some((other) => fileName(other) === name) ? 'sameName' : null;
}

interface ContentFile {
    role: 'sample' | 'attachment';
    path: string;
    /** In the archive. */
    name: string;
    problem: FileProblem | null;
}

/** @param takesAll whether files of any name are archived */
export function chosenFiles({ sample, attachments }: Draft, takesAll: boolean): ContentFile[] {
    const files: Pick<ContentFile, 'role' | 'path'>[] = [
        ...(sample ? [{ role: 'sample', path: sample } as const] : []),
        ...attachments.map((path) => ({ role: 'attachment', path }) as const),
    ];
    const paths = files.map(({ path }) => path);
    const names = archiveNames(paths, ownFiles);
    return files.map((file, index) => ({
        ...file,
        name: takesAll ? names[index]! : fileName(file.path),
        problem: takesAll ? null : fileProblem(file.path, paths.slice(0, index)),
    }));
}

interface ContentLine {
    /** The name of its text. */
    part: 'description' | 'file' | 'systemInformation' | 'suiteSettings' | 'crashDumps';
    /** The files in the archive, as far as they are known before it is built. */
    names: string[];
    problem: ContentProblem | null;
}

/** What will be in the archive, in the order in which it is put there; nothing that is `gone`. */
export function archiveContents(draft: Draft, takesAll: boolean, gone: string[]): ContentLine[] {
    const isTyped = takesAll && draft.description.includes('\n');
    const description = isTyped ? ['describe.txt', 'description.txt'] : ['describe.txt'];
    const lines: ContentLine[] = [
        { part: 'description', names: description, problem: null },
        ...chosenFiles(draft, takesAll).map(
            ({ name, path, problem }): ContentLine => ({
                part: 'file',
                names: [name],
                problem: gone.includes(path) ? 'gone' : problem,
            }),
        ),
    ];
    if (draft.systemInformation) {
        lines.push({ part: 'systemInformation', names: ['sysinfo.txt'], problem: null });
    }
    if (draft.suiteSettings) {
        lines.push({ part: 'suiteSettings', names: settingFiles, problem: null });
    }
    if (draft.crashDumps) lines.push({ part: 'crashDumps', names: ['*.dmp'], problem: null });
    return lines;
}
