/** Explanations, which a shell may offer with the doctor: which line or right is the cause. */
import type { Caller } from './wire/caller';
import { flag, list, members, optional, text, word } from './wire/decode';
import { place, repairPlan, type Place, type RepairPlan } from './doctor/reading';

const accesses = ['read', 'write', 'run'] as const;
const openVerdicts = ['opens', 'not-as-said', 'nothing', 'undecided'] as const;
const deniedVerdicts = ['granted', 'denied', 'undecided'] as const;
const inputVerdicts = ['well', 'cause', 'undecided'] as const;
const origins = ['unset', 'line', 'manager', 'undecided'] as const;

export type Access = (typeof accesses)[number];

/** A desktop entry that a tool takes, and the line that names it. */
export interface OpenChoice {
    entry: string;
    where: Place;
}

/** What opens one kind of the suite's documents; null for nothing. */
export interface SuffixOpening {
    /** Without its dot. */
    suffix: string;
    choice: OpenChoice | null;
}

/** What a line says of a type, and what becomes of it. */
export interface Statement {
    entry: string;
    mime: string;
    where: Place;
    decides: boolean;
    text: string;
}

interface Explained {
    /** For people. */
    text: string;
    /** What would repair it; null where nothing does. */
    repair: RepairPlan | null;
}

export interface OpenReason extends Explained {
    verdict: (typeof openVerdicts)[number];
    mime: string;
    /** The pattern that the name fits, with its line; empty for none. */
    patterns: { pattern: string; where: Place }[];
    statements: Statement[];
    /** By the tool's name; null for nothing. */
    tools: Record<'gio' | 'xdg-mime' | 'KDE', OpenChoice | null>;
}

/** A directory, link or file on the way to a path. */
export interface PathPart {
    path: string;
    kind: string;
    /** In octal; empty where it is not known. */
    mode: string;
    owner: string;
    group: string;
    /** Of a link. */
    target: string;
    hasAccessList: boolean;
    blocks: boolean;
}

export interface AccessReason extends Explained {
    verdict: (typeof deniedVerdicts)[number];
    access: Access;
    chain: PathPart[];
    /** Opens it, as a command for a terminal; may be empty. */
    remedy: string;
    /** Whether the user may run it. */
    isOwn: boolean;
}

export interface InputVariable {
    name: string;
    /** Null where it is not set. */
    value: string | null;
    origin: (typeof origins)[number];
    /** The lines that set it, or may have set it. */
    places: Place[];
}

export interface InputReason extends Explained {
    verdict: (typeof inputVerdicts)[number];
    variables: InputVariable[];
}

function explained(line: Record<string, unknown>): Explained {
    return { text: text(line.text), repair: optional(line.repair, repairPlan, null) };
}

function openChoice(value: unknown): OpenChoice {
    const { entry, where } = members(value);
    return { entry: text(entry), where: place(where) };
}

function suffixOpenings(result: unknown): SuffixOpening[] {
    return list(members(result).suffixes).map((one) => {
        const { suffix, gio } = members(one);
        return { suffix: text(suffix), choice: optional(gio, openChoice, null) };
    });
}

function openReason(result: unknown): OpenReason {
    const line = members(result);
    return {
        ...explained(line),
        verdict: word(line.verdict, openVerdicts),
        mime: text(line.mime),
        patterns: list(members(line.found).names).map((one) => {
            const { pattern, where } = members(one);
            return { pattern: text(pattern), where: place(where) };
        }),
        statements: list(line.statements).map((one) => {
            const { entry, mime, where, fate, text: said } = members(one);
            return {
                entry: text(entry),
                mime: text(mime),
                where: place(where),
                decides: fate === 'decides',
                text: text(said),
            };
        }),
        tools: {
            gio: optional(line.gio, openChoice, null),
            'xdg-mime': optional(line.xdgMime, openChoice, null),
            KDE: optional(line.kde, openChoice, null),
        },
    };
}

function pathPart(value: unknown, blocker: string): PathPart {
    const part = members(value);
    const path = text(part.path);
    return {
        path,
        kind: text(part.kind),
        mode: optional(part.mode, text, ''),
        owner: optional(part.owner, text, ''),
        group: optional(part.group, text, ''),
        target: optional(part.target, text, ''),
        hasAccessList: optional(part.accessList, flag, false),
        blocks: path === blocker,
    };
}

function accessReason(result: unknown): AccessReason {
    const line = members(result);
    const blocker = text(line.component);
    return {
        ...explained(line),
        verdict: word(line.verdict, deniedVerdicts),
        access: word(line.access, accesses),
        chain: list(line.chain).map((part) => pathPart(part, blocker)),
        remedy: text(line.remedy),
        isOwn: line.needs === 'user',
    };
}

function inputReason(result: unknown): InputReason {
    const line = members(result);
    return {
        ...explained(line),
        verdict: word(line.verdict, inputVerdicts),
        variables: list(line.variables).map((one) => {
            const { name, value, origin, places } = members(one);
            return {
                name: text(name),
                value: optional(value, text, null),
                origin: word(origin, origins),
                places: list(places).map(place),
            };
        }),
    };
}

/** The doctor's explanations; texts come in `language`. Repairs are made with doctor.fix. */
export function whyOperations(caller: Caller) {
    return {
        /** Whether this shell has them. */
        get isOffered(): boolean {
            return caller.offers('why.open');
        },
        /** What opens each kind of the suite's documents. */
        openings: () => caller.operate('why.open', suffixOpenings),
        /** What opens files with that suffix, and why. */
        opening: (language: string, suffix: string) =>
            caller.operate('why.open', openReason, { language, suffix }),
        /** Whether the user gets an access to a path, absolute or in the home folder as "~/". */
        access: (language: string, path: string, access: Access) =>
            caller.operate('why.denied', accessReason, { language, path, access }),
        /** Whether input methods work in this session. */
        input: (language: string) => caller.operate('why.input', inputReason, { language }),
    };
}
