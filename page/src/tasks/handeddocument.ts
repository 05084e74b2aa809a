const storageKey = 'assistant.document';

/** Leaves a document for the view that opens next, so that it need not be chosen again. */
export function handDocument(path: string): void {
    try {
        sessionStorage.setItem(storageKey, path);
    } catch {
        // The next view asks for it.
    }
}

/** The document that the view before has left, once; empty if there is none. */
export function takeHandedDocument(): string {
    const path = sessionStorage.getItem(storageKey) ?? '';
    sessionStorage.removeItem(storageKey);
    return path;
}
