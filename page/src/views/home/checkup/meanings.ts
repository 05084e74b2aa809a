/**
 * Checks whose findings say what was seen and not what it means: by subject, then by name; an
 * empty name stands for all others of the subject.
 */
const meanings: Record<string, Record<string, string>> = {
    associations: { '': 'opening', types: 'types' },
    input: { '': 'typing', 'not-connected': '' },
    libreoffice: {
        'no-windows': 'noWindows',
        'input-module': 'noTyping',
        'base-missing': 'notOpened',
        'math-missing': 'notOpened',
        'recovery-missing': 'asksToRecover',
        'path-missing': 'otherFolder',
        'replacement-font': 'notReplaced',
        opencl: 'slowSheets',
        spelling: 'notSpelled',
        hyphenation: 'notHyphenated',
        thesaurus: 'noSynonyms',
        'opened-by-archiver': 'archives',
        'flatpak-documents': 'notSeen',
        'snap-documents': 'notSeen',
        'print-server': 'latePrinting',
        'python-missing': 'macros',
        apparmor: 'refused',
        'window-plugin': 'otherWindows',
        preload: 'preload',
        'newer-settings': 'dropped',
        'extension-newer': 'extension',
        'java-missing': 'noJava',
        'flatpak-fonts': 'fontsNotSeen',
    },
    memory: { tight: 'memory' },
    updater: { '': 'updates' },
    crash: { 'dumps-there': 'dumps' },
    permissions: { 'foreign-open': 'open', open: 'open', nameless: 'saving' },
    shortcuts: { '': 'starting', wrong: 'wrongStart' },
};

/** The name of the sentence that says what a check's findings mean; empty where none does. */
export function meaningOf(check: string): string {
    const [area = '', name = ''] = check.split('.');
    const ofArea = meanings[area] ?? {};
    return ofArea[name] ?? ofArea[''] ?? '';
}
