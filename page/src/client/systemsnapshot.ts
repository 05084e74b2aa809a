import type { Caller } from './wire/caller';
import { flag, joinedList, list, members, number, optional, text, textList } from './wire/decode';

export interface Font {
    family: string;
    style: string;
}

export interface Variable {
    name: string;
    value: string;
}

/** The picture of the machine that the system report shows. */
export interface SystemSnapshot {
    kernel: string;
    /** Null when no suite is installed beside the library. */
    suiteVersion: string | null;
    otherSuites: string[];
    browsers: string[];
    fonts: Font[];
    processors: string[];
    variables: Variable[];
    /** The answer as it came. */
    raw: Record<string, unknown>;
}

const familyColumn = 40;
const styleWords = new RegExp(
    '\\s*((?:(?:Extra|Semi|Demi|Ultra)?[ -]?' +
        '(?:Thin|Light|Regular|Book|Medium|Bold|Black|Heavy|Italic|Oblique|Condensed)\\s*)+' +
        '(?:,.*)?)$',
);

/**
 * A font line holds the family, padded to 40 bytes, and the style. A family that fills the column
 * touches its style, which is then recognised by its usual words.
 */
export function font(line: string): Font {
    const bytes = new TextEncoder().encode(line);
    const decoder = new TextDecoder();
    if (bytes.length <= familyColumn || bytes[familyColumn - 1] === 0x20) {
        return {
            family: decoder.decode(bytes.slice(0, familyColumn)).trim(),
            style: firstName(decoder.decode(bytes.slice(familyColumn))),
        };
    }
    const style = styleWords.exec(line.trimEnd());
    return style
        ? { family: line.slice(0, style.index).trim(), style: firstName(style[1] ?? '') }
        : { family: line.trim(), style: '' };
}

/** A style is listed in every language that the font names it in, the English one first. */
function firstName(style: string): string {
    return (style.split(',')[0] ?? '').trim();
}

function fonts(result: unknown): Font[] {
    // Untrimmed pieces: the padding of the family column parts family from style.
    const lines = new Set(
        text(result)
            .split('|')
            .filter((line) => line.trim() !== ''),
    );
    return [...lines].map(font);
}

/** A value may hold the "|" that joins the list: a piece without assignment continues one. */
function variables(result: unknown): Variable[] {
    const found: Variable[] = [];
    for (const piece of text(result).split('|')) {
        const assignment = /^([A-Za-z_][^=\s]*)=([\s\S]*)$/.exec(piece);
        const last = found[found.length - 1];
        if (assignment) found.push({ name: assignment[1]!, value: assignment[2]! });
        else if (last) last.value += `|${piece}`;
    }
    return found.sort((first, second) => (first.name < second.name ? -1 : 1));
}

/** The library appends the end of the browser probe's output as one byte 0xFF. */
function browsers(result: unknown): string[] {
    return joinedList(text(result).replace(/[\uFFFD\u00FF]$/, ''));
}

function suiteVersion(result: unknown): string | null {
    const version = text(result).replace(/^Version:/, '');
    return version === '0.0.0.0' ? null : version;
}

export function systemSnapshot(result: unknown): SystemSnapshot {
    const raw = members(result);
    return {
        kernel: text(raw.sysinfo).trim(),
        suiteVersion: suiteVersion(raw.vyrinfo),
        otherSuites: joinedList(raw.officeinfo),
        browsers: browsers(raw.browserinfo),
        fonts: fonts(raw.fontinfo),
        processors: joinedList(raw.cpuInfo),
        variables: variables(raw.envInfo),
        raw,
    };
}

interface Disk {
    /** Where it is mounted. */
    place: string;
    type: string;
    total: number;
    free: number;
    isReadOnly: boolean;
}

interface Screen {
    /** Empty for one that tells none. */
    name: string;
    /** The connector. */
    output: string;
    /** Such as "1920x1080"; empty if it is not known. */
    mode: string;
}

/** What the machine and its session are; empty texts are not known. */
export interface MachinePicture {
    distribution: string;
    model: string;
    desktop: string;
    /** "wayland", "x11" or empty. */
    session: string;
    memory: { total: number | null; available: number | null };
    disks: Disk[];
    graphics: { name: string; driver: string }[];
    screens: Screen[];
    /** Such as "zh_CN", the wanted one first. */
    languages: string[];
}

function disk(result: unknown): Disk {
    const { place, type, total, free, isReadOnly } = members(result);
    return {
        place: text(place),
        type: text(type),
        total: number(total),
        free: number(free),
        isReadOnly: flag(isReadOnly),
    };
}

function screen(result: unknown): Screen {
    const { name, output, mode } = members(result);
    return { name: text(name), output: text(output), mode: text(mode) };
}

function machinePicture(result: unknown): MachinePicture {
    const machine = members(members(result).machine);
    const memory = members(machine.memory);
    return {
        distribution: text(machine.distribution),
        model: text(machine.model),
        desktop: text(machine.desktop),
        session: text(machine.session),
        memory: {
            total: optional(memory.total, number, null),
            available: optional(memory.available, number, null),
        },
        disks: list(machine.disks).map(disk),
        graphics: list(machine.graphics).map((card) => {
            const { name, driver } = members(card);
            return { name: text(name), driver: text(driver) };
        }),
        screens: list(machine.screens).map(screen),
        languages: textList(machine.languages),
    };
}

export function machineOperations(caller: Caller) {
    return {
        get isOffered(): boolean {
            return caller.offers('task.machine');
        },
        read: () => caller.perform('task.machine', machinePicture),
    };
}
