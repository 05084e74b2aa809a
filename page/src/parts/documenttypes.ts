/** The document types that the suite can be asked about, by application. */
const extensions = {
    writer: ['vyr', 'vyt', 'doc', 'dot', 'docx', 'dotx', 'docm', 'dotm'],
    spreadsheet: ['tbl', 'tbt', 'xls', 'xlt', 'xlsx', 'xlsm', 'xltx', 'xltm', 'xlsb'],
    presentation: ['shd', 'sht', 'ppt', 'pps', 'pot', 'pptx', 'ppsx', 'potx'],
};

type DocumentApplication = keyof typeof extensions;

/** The last component of a path. */
export function fileName(path: string): string {
    return path.slice(path.lastIndexOf('/') + 1);
}

export function folderOf(path: string): string {
    return path.slice(0, Math.max(path.lastIndexOf('/'), path.startsWith('/') ? 1 : 0));
}

/** Which application a document belongs to; null when the suite cannot be asked about it. */
export function applicationOf(path: string): DocumentApplication | null {
    const name = fileName(path);
    const dot = name.lastIndexOf('.');
    if (dot < 0) return null;
    const suffix = name.slice(dot + 1).toLowerCase();
    const names = Object.keys(extensions) as DocumentApplication[];
    return names.find((application) => extensions[application].includes(suffix)) ?? null;
}

/** The PDF that printing a document leaves: its name up to the first dot, and ".pdf". */
export function printedName(path: string): string {
    return `${fileName(path).split('.')[0]}.pdf`;
}
