import type { MachinePicture, SystemSnapshot } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';

export const sectionNames = [
    'overview',
    'fonts',
    'environment',
    'processors',
    'browsers',
    'suites',
] as const;

export type SectionName = (typeof sectionNames)[number];

/** One row of a section; a row without a label is only its value. */
export interface Row {
    label?: string;
    value: string;
    /** Hidden on screen and in copied text until the user asks for it. */
    secret?: boolean;
    /** Font rows: the styles of the family. */
    style?: string;
    /** The one of them that the sample is drawn in. */
    face?: string;
    /** Shown in the picture of the machine already. */
    isPictured?: boolean;
}

export type Sections = Record<SectionName, Row[]>;

/** "ASKPASS" names a program that asks for a password, and holds none. */
const secretName = new RegExp(
    'PASSWORD|PASSWD|PASSPHRASE|(?<!ASK)PASS\\b|_PWD\\b|SECRET|TOKEN' +
        '|CREDENTIAL|API_?KEY|PRIVATE_?KEY|COOKIE',
    'i',
);
const urlWithPassword = /\/\/[^/\s:@]*:[^/\s@]+@/;

/** Whether a variable probably holds something that should not be seen by others. */
export function isSecret(name: string, value: string): boolean {
    return value !== '' && (secretName.test(name) || urlWithPassword.test(value));
}

/** Equal processors are listed once, with their number. */
function countedProcessors(processors: string[]): string[] {
    const counts = new Map<string, number>();
    for (const name of processors) counts.set(name, (counts.get(name) ?? 0) + 1);
    return [...counts].map(([name, count]) => (count > 1 ? `${count} × ${name}` : name));
}

function overview(snapshot: SystemSnapshot, t: Translate, installed: string): Row[] {
    const none = t('sysinfo.none');
    const suites = [installed, snapshot.suiteVersion ?? ''].filter(Boolean);
    return [
        { label: t('sysinfo.kernel'), value: snapshot.kernel || none },
        { label: t('sysinfo.suite'), value: suites.join('; ') || t('sysinfo.noSuite') },
        {
            label: t('sysinfo.sections.processors'),
            value: countedProcessors(snapshot.processors).join('; ') || none,
        },
        { label: t('sysinfo.sections.browsers'), value: snapshot.browsers.join('; ') || none },
        {
            label: t('sysinfo.sections.suites'),
            value: t(
                'sysinfo.suiteEntries',
                { count: snapshot.otherSuites.length },
                snapshot.otherSuites.length,
            ),
        },
        {
            label: t('sysinfo.sections.fonts'),
            value: t('sysinfo.fontFaces', {
                faces: snapshot.fonts.length,
                families: new Set(snapshot.fonts.map(({ family }) => family)).size,
            }),
        },
        {
            label: t('sysinfo.sections.environment'),
            value: t(
                'sysinfo.variables',
                { count: snapshot.variables.length },
                snapshot.variables.length,
            ),
        },
    ];
}

/** The plain face of a family, which is called differently. */
const plainStyle = /^(regular|book|roman|normal|medium)$/i;

/** A row for each family, with all of its styles. */
function fontRows(fonts: SystemSnapshot['fonts']): Row[] {
    const families = new Map<string, string[]>();
    for (const { family, style } of fonts) {
        families.set(family, [...(families.get(family) ?? []), style]);
    }
    return [...families].map(([family, styles]) => ({
        value: family,
        style: styles.filter(Boolean).join(', '),
        face: styles.find((style) => plainStyle.test(style)) ?? styles[0] ?? '',
    }));
}

/** What is known beside the snapshot. */
interface Surroundings {
    /** The office suite that is looked after, beside the assistant's own. */
    suite?: string;
    /** Rows of the machine itself, in a shell that describes it. */
    machine?: Row[];
}

export function sectionsOf(
    snapshot: SystemSnapshot,
    t: Translate,
    { suite = '', machine = [] }: Surroundings = {},
): Sections {
    const lines = (values: string[]): Row[] => values.map((value) => ({ value }));
    return {
        overview: [...machine, ...overview(snapshot, t, suite)],
        fonts: fontRows(snapshot.fonts),
        environment: snapshot.variables.map(({ name, value }) => ({
            label: name,
            value,
            secret: isSecret(name, value),
        })),
        processors: lines(snapshot.processors),
        browsers: lines(snapshot.browsers),
        suites: lines(snapshot.otherSuites),
    };
}

/** Shown instead of a hidden value, also in copied text. */
const hiddenMark = '••••••••';

export function shownValue(row: Row, revealed: ReadonlySet<string>): string {
    return row.secret && !revealed.has(row.label ?? '') ? hiddenMark : row.value;
}

function rowText(row: Row, revealed: ReadonlySet<string>): string {
    const value = visibleText([shownValue(row, revealed), row.style].filter(Boolean).join('  '));
    return row.label === undefined ? value : `${visibleText(row.label)}: ${value}`;
}

/** One section as text to paste. */
export function sectionText(
    name: SectionName,
    sections: Sections,
    t: Translate,
    revealed: ReadonlySet<string>,
): string {
    const rows = sections[name].map((row) => rowText(row, revealed));
    return [`== ${t(`sysinfo.sections.${name}`)} ==`, ...rows].join('\n');
}

export function wholeText(sections: Sections, t: Translate, revealed: ReadonlySet<string>): string {
    return sectionNames.map((name) => sectionText(name, sections, t, revealed)).join('\n\n');
}

/** A cell of a table in Markdown. */
const cell = (text: string): string =>
    visibleText(text)
        .replace(/[\\|`*_<>[\]]/g, '\\$&')
        .replace(/\s+/g, ' ');

function markdownRow(row: Row, revealed: ReadonlySet<string>): string {
    const value = cell(shownValue(row, revealed));
    if (row.label !== undefined) return `| ${cell(row.label)} | ${value} |`;
    return row.style ? `- ${value}: ${cell(row.style)}` : `- ${value}`;
}

/** The whole as Markdown, as reports in trackers take it. */
export function markdown(sections: Sections, t: Translate, revealed: ReadonlySet<string>): string {
    const parts = sectionNames
        .filter((name) => sections[name].length)
        .map((name) => {
            const rows = sections[name].map((row) => markdownRow(row, revealed));
            const isTable = sections[name][0]!.label !== undefined;
            const head = `| ${t('sysinfo.columns.name')} | ${t('sysinfo.columns.value')} |`;
            const lines = isTable ? [head, '| --- | --- |', ...rows] : rows;
            return [`## ${t(`sysinfo.sections.${name}`)}`, '', ...lines].join('\n');
        });
    return [`# ${t('sysinfo.title')}`, ...parts].join('\n\n');
}

/** The answer as it came, as JSON, but with hidden values still hidden. */
export function rawText(
    snapshot: SystemSnapshot,
    revealed: ReadonlySet<string>,
    machine?: MachinePicture,
): string {
    const variables = snapshot.variables.map(
        ({ name, value }) =>
            `${name}=${shownValue({ label: name, value, secret: isSecret(name, value) }, revealed)}`,
    );
    return JSON.stringify({ ...snapshot.raw, envInfo: variables.join('|'), machine }, null, 2);
}
