/** The office suite that is looked after, which a shell may describe with the doctor. */
import type { Caller } from './wire/caller';
import { flag, list, members, number, optional, text, textList, word } from './wire/decode';
import { repairPlan } from './doctor/reading';

const states = ['running', 'locked', 'unused', 'ready'] as const;
const owners = ['user', 'shared', 'bundled'] as const;

export interface Installation {
    name: string;
    version: string;
    /** "package", "folder", "flatpak" or "snap". */
    source: string;
    folder: string;
    chosen: boolean;
    components: string[];
    languages: string[];
    plugins: string[];
}

export interface ProfilePart {
    part: string;
    /** In bytes. */
    size: number;
}

export interface Extension {
    name: string;
    version: string;
    owner: (typeof owners)[number];
    uses: string[];
    /** Why it does not work. */
    faults: string[];
}

/** What the chosen installation is like now. */
export interface SuiteState {
    state: (typeof states)[number];
    profile: {
        /** Empty if it cannot be told. */
        path: string;
        exists: boolean;
        /** Whether everything was counted. */
        complete: boolean;
        size: number;
        parts: ProfilePart[];
        /** How many good copies of its settings the suite keeps, and when it made the last. */
        copies: number;
        lastCopy: Date | null;
        /** Where the last reset has moved things to; empty without one. */
        earlier: string;
    };
    extensions: Extension[];
    graphics: { plugin: string; forced: boolean; skia: boolean | null; openCl: boolean | null };
}

/** How long the suite takes to start, in milliseconds. */
interface StartTimes {
    clean: number;
    own: number;
    /** What leaving out a part of the profile saves, the most first. */
    parts: { part: string; saved: number }[];
}

interface SuiteDescription {
    installations: Installation[];
    /** Null without an installation. */
    state: SuiteState | null;
}

function installation(value: unknown): Installation {
    const one = members(value);
    return {
        name: text(one.name),
        version: text(one.version),
        source: text(one.source),
        folder: text(one.folder),
        chosen: flag(one.chosen),
        components: textList(one.components),
        languages: textList(one.languages),
        plugins: textList(one.plugins),
    };
}

function extension(value: unknown): Extension {
    const { name, version, owner, uses, faults } = members(value);
    return {
        name: text(name),
        version: text(version),
        owner: word(owner, owners),
        uses: textList(uses),
        faults: textList(faults),
    };
}

function profileOf(value: unknown): SuiteState['profile'] {
    const profile = members(value);
    const lastCopy = text(profile.lastCopy);
    return {
        path: text(profile.path),
        exists: flag(profile.exists),
        complete: flag(profile.complete),
        size: number(profile.size),
        parts: list(profile.parts).map((one) => {
            const { part, size } = members(one);
            return { part: text(part), size: number(size) };
        }),
        copies: number(profile.copies),
        lastCopy: lastCopy ? new Date(lastCopy) : null,
        earlier: text(profile.earlier),
    };
}

function description(result: unknown): SuiteDescription {
    const { installations, ...state } = members(result);
    const graphics = state.graphics === undefined ? null : members(state.graphics);
    return {
        installations: list(installations).map(installation),
        state: graphics && {
            state: word(state.state, states),
            profile: profileOf(state.profile),
            extensions: list(state.extensions).map(extension),
            graphics: {
                plugin: text(graphics.plugin),
                forced: flag(graphics.forced),
                skia: optional(graphics.skia, flag, null),
                openCl: optional(graphics.openCl, flag, null),
            },
        },
    };
}

function startTimes(result: unknown): StartTimes {
    const { clean, own, parts } = members(result);
    return {
        clean: number(clean),
        own: number(own),
        parts: list(parts).map((one) => {
            const { part, saved } = members(one);
            return { part: text(part), saved: number(saved) };
        }),
    };
}

/** The operations on the suite; texts come in `language`. Plans are carried out with doctor.fix. */
export function suiteOperations(caller: Caller) {
    return {
        /** Whether this shell has them. */
        get isOffered(): boolean {
            return caller.offers('suite.describe');
        },
        describe: (language: string) => caller.operate('suite.describe', description, { language }),
        /** Looks after the one in this folder from now on. */
        choose: (language: string, folder: string) =>
            caller.operate('suite.choose', description, { language, folder }),
        /** What would move the profile aside but for the parts to keep. */
        planReset: (language: string, keep: string[]) =>
            caller.operate('suite.plan', repairPlan, { language, repair: 'reset', keep }),
        /** What would bring back what the last reset has moved. */
        planRestore: (language: string) =>
            caller.operate('suite.plan', repairPlan, { language, repair: 'restore' }),
        /** Starts it with a temporary profile; gives the reason if that cannot be done. */
        start: (language: string) =>
            caller.operate('suite.start', (answer) => text(members(answer).refusal), { language }),
        get isMeasured(): boolean {
            return caller.offers('task.start');
        },
        /** Starts it several times with copies of the profile. */
        measureStart: () => caller.perform('task.start', startTimes, {}),
    };
}
