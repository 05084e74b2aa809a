import type { Caller } from './wire/caller';
import {
    base64Text,
    flag,
    members,
    number,
    optional,
    success,
    text,
    textList,
    textTable,
    toBase64Text,
} from './wire/decode';

function missingFonts(result: unknown): string {
    return base64Text(members(result).MissFonts);
}

/** What missing fonts are shown in. */
export interface FontSubstitutes {
    /** A family for each missing one. */
    families: Record<string, string>;
    /** Packages of fonts that are installed. */
    packages: string[];
}

function fontSubstitutes(result: unknown): FontSubstitutes {
    const { families, packages } = members(result);
    return { families: textTable(families), packages: textList(packages) };
}

/** How a file looks. */
export interface FilePreview {
    exists: boolean;
    size: number;
    changed: Date;
    /** A data address; empty where there is no picture of it. */
    picture: string;
    /** The beginning of a text. */
    text: string;
}

function filePreview(result: unknown): FilePreview {
    const { exists, size, changed, picture, text: start } = members(result);
    return {
        exists: flag(exists),
        size: number(size),
        changed: new Date(text(changed)),
        picture: optional(picture, text, ''),
        text: optional(start, text, ''),
    };
}

export function previewOperations(caller: Caller) {
    return {
        get isOffered(): boolean {
            return caller.offers('task.preview');
        },
        read: (path: string) => caller.perform('task.preview', filePreview, { path }),
    };
}

interface PrintedDocument {
    document: string;
    /** Its path, from a shell that has read it back; else empty. */
    pdf: string;
}

function printedDocument(result: unknown): PrintedDocument {
    const { document, file } = members(result);
    return { document: text(document), pdf: optional(file, text, '') };
}

const startedPrint = (result: unknown): PrintedDocument => ({
    document: base64Text(result),
    pdf: '',
});

/** Documents with problems; a dialog that the user cancels counts as failed. */
export function documentCommands(caller: Caller) {
    return {
        /** The missing fonts in the suite's own form. */
        missingFonts: (path: string) =>
            caller.askAside('task.fonts', 'comparefont', missingFonts, {
                filepath: toBase64Text(path),
            }),
        fontSubstitutes: (names: string[]) =>
            caller.perform('task.substitutes', fontSubstitutes, { names }),
        chooseLayoutDocument: () => caller.ask('chooselayouterrorfile', base64Text),
        /** Unanswered when the host considers the document unsafe to open. */
        openLayoutDocument: () => caller.ask('openlaytouerrorfile', success),
        /** The document; the command may show the PDF of an earlier print. */
        printDocument: (open: boolean) =>
            caller.offers('task.print')
                ? caller.perform('task.print', printedDocument, { open })
                : caller.ask('openprinterrorfile', startedPrint),
        /** How the suite lays out a document, as a PDF. */
        layOutDocument: (path: string) =>
            caller.perform('task.print', printedDocument, { path, open: false }),
    };
}
