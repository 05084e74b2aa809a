import { base64Text, members, success, text } from './wire/decode';
import { UnreadableAnswer } from './wire/outcome';
import type { CallbackName, Envelope } from './wire/host';

export interface SearchHit {
    name: string;
    directory: string;
}

export interface CheckFinding {
    check: string;
    component: string;
    value: string;
}

function tip(result: unknown): 'show' | 'hide' {
    const word = text(result);
    if (word !== 'show' && word !== 'hide') throw new UnreadableAnswer(`no tip: ${word}`);
    return word;
}

const mostDirectories = 1000;
const directories = new Map<string, string>();

/** Many hits share a directory, which is decoded, and kept, once for all of them. */
function hitDirectory(encoded: unknown): string {
    const known = directories.get(text(encoded));
    if (known !== undefined) return known;
    if (directories.size >= mostDirectories) directories.clear();
    const directory = base64Text(encoded);
    directories.set(text(encoded), directory);
    return directory;
}

/** One hit is an object of one member, both sides base64, so that any file name can be a key. */
function searchHit(result: unknown): SearchHit {
    const entries = Object.entries(members(result));
    const [entry] = entries;
    if (!entry || entries.length !== 1) throw new UnreadableAnswer('no single hit');
    return { name: base64Text(entry[0]), directory: hitDirectory(entry[1]) };
}

function checkFinding(result: unknown): CheckFinding {
    const { value, cmd, app } = members(result);
    return { check: text(cmd), component: text(app), value: base64Text(value) };
}

/** What the library reports later, with the reader of each. */
const notices = {
    childTip: { callback: 'hiddentipCallBack', decode: tip },
    searchHit: { callback: 'startsearchfileCallBack', decode: searchHit },
    searchFinished: { callback: 'searchfilefinish', decode: success },
    freshDump: { callback: 'freshcrshpageCallBack', decode: success },
    checkFinished: { callback: 'returnvyrenvcheck', decode: checkFinding },
} as const satisfies Record<
    string,
    { callback: CallbackName; decode: (result: unknown) => unknown }
>;

export type NoticeName = keyof typeof notices;
export type Notice<Name extends NoticeName> = ReturnType<(typeof notices)[Name]['decode']>;

/** The page functions that the library calls; `target` is the window outside tests. */
export type NoticeTarget = Partial<Record<CallbackName, (envelope: Envelope) => void>>;

/** Hands the library's later answers to whoever listens. */
export class Notices {
    constructor(
        private readonly target: NoticeTarget,
        private readonly onUnreadable: (name: NoticeName, reason: string) => void,
    ) {}

    /** Calls `listener` for each notice of that name; the answer ends that. */
    listen<Name extends NoticeName>(
        name: Name,
        listener: (notice: Notice<Name>) => void,
    ): () => void {
        const { callback, decode } = notices[name];
        const receive = (envelope: Envelope): void => {
            try {
                listener(decode(envelope.result) as Notice<Name>);
            } catch (error) {
                if (!(error instanceof UnreadableAnswer)) throw error;
                this.onUnreadable(name, error.message);
            }
        };
        this.target[callback] = receive;
        return () => {
            if (this.target[callback] === receive) delete this.target[callback];
        };
    }
}
