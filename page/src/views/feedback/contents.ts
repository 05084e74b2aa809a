import { fileName } from '@/parts/documenttypes';
import type { Draft } from './draft';

/** Why a file will not be in the archive as it should, by the name of its text. */
type FileProblem = 'blank' | 'semicolon' | 'sameName' | 'reserved';

/** Files that the archive has of its own; one of the same name would take its place. */
const settingFiles = ['Office.conf', 'ome.ini', 'feature.dat', 'product.dat', 'setup.cfg'];
const reserved = ['describe.txt', 'sysinfo.txt', ...settingFiles];

/**
 * The list of files is split at ";" and at spaces on its way into the archive, so a path must not
 * contain them. All files are in one folder there.
 */
export function fileProblem(path: string, earlier: string[]): FileProblem | null {
    if (path.includes(';')) return 'semicolon';
    if (/[ \t\n]/.test(path)) return 'blank';
    const name = fileName(path);
    if (reserved.includes(name)) return 'reserved';
    return earlier.some((other) => fileName(other) === name) ? 'sameName' : null;
}

interface ContentFile {
    role: 'sample' | 'attachment';
    path: string;
    problem: FileProblem | null;
}

export function chosenFiles({ sample, attachments }: Draft): ContentFile[] {
    const files: Pick<ContentFile, 'role' | 'path'>[] = [
        ...(sample ? [{ role: 'sample', path: sample } as const] : []),
        ...attachments.map((path) => ({ role: 'attachment', path }) as const),
    ];
    return files.map((file, index) => ({
        ...file,
        problem: fileProblem(
            file.path,
            files.slice(0, index).map(({ path }) => path),
        ),
    }));
}

interface ContentLine {
    /** The name of its text. */
    part: 'description' | 'file' | 'systemInformation' | 'suiteSettings' | 'crashDumps';
    /** The files in the archive, as far as they are known before it is built. */
    names: string[];
    problem: FileProblem | null;
}

/** What will be in the archive, in the order in which it is put there. */
export function archiveContents(draft: Draft): ContentLine[] {
    const lines: ContentLine[] = [
        { part: 'description', names: ['describe.txt'], problem: null },
        ...chosenFiles(draft).map(
            ({ path, problem }): ContentLine => ({
                part: 'file',
                names: [fileName(path)],
                problem,
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

/** The archive itself; the path that was chosen lacks its ending. */
export function archivePath(chosen: string): string {
    return `${chosen}.tar.gz`;
}
