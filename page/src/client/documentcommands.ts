import type { Caller } from './caller';
import { base64Text, members, success, text, toBase64Text } from './decode';

function missingFonts(result: unknown): string {
    return base64Text(members(result).MissFonts);
}

/** Documents with problems; a dialog that the user cancels counts as failed. */
export function documentCommands(caller: Caller) {
    return {
        /** The missing fonts in the suite's own form. */
        missingFonts: (path: string) =>
            caller.askAside('task.fonts', 'comparefont', missingFonts, {
                filepath: toBase64Text(path),
            }),
        chooseLayoutDocument: () => caller.ask('chooselayouterrorfile', base64Text),
        /** Unanswered when the host considers the document unsafe to open. */
        openLayoutDocument: () => caller.ask('openlaytouerrorfile', success),
        /** The document; the command may show the PDF of an earlier print. */
        printDocument: () =>
            caller.offers('task.print')
                ? caller.perform('task.print', (result) => text(members(result).document))
                : caller.ask('openprinterrorfile', base64Text),
    };
}
