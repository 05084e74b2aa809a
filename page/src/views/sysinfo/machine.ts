import type { MachinePicture } from '@/client';
import type { Translate } from '@/frame/texts';
import type { Row } from './sections';

/** The name of a language such as "zh_CN" in the language of the window. */
export function languageName(code: string, locale: string): string {
    if (code === 'C' || code === 'POSIX') return code;
    try {
        // The library's types do not have it, Chromium does.
        const { DisplayNames } = Intl as unknown as {
            DisplayNames: new (
                locales: string[],
                options: { type: string },
            ) => { of(tag: string): string | undefined };
        };
        const names = new DisplayNames([locale], { type: 'language' });
        return `${names.of(code.replace('_', '-')) ?? code} (${code})`;
    } catch {
        return code;
    }
}

/** The screen's name and what it shows, such as "U2720Q, 3840 × 2160". */
export function screenText({ name, output, mode }: MachinePicture['screens'][number]): string {
    return [name || output, mode.replace('x', ' × ')].filter(Boolean).join(', ');
}

const sessions: Record<string, string> = { wayland: 'Wayland', x11: 'X11' };

/** The desktop and what draws its windows. */
export function desktopText({ desktop, session }: MachinePicture): string {
    return [desktop.split(':').join(', '), sessions[session] ?? ''].filter(Boolean).join(', ');
}

export const graphicsText = ({ name, driver }: MachinePicture['graphics'][number]): string =>
    [name, driver && `(${driver})`].filter(Boolean).join(' ');

/** The machine as rows, for what is copied. */
export function machineRows(
    machine: MachinePicture,
    t: Translate,
    size: (bytes: number) => string,
    locale: string,
): Row[] {
    const { memory } = machine;
    const known: [string, string][] = [
        ['model', machine.model],
        ['distribution', machine.distribution],
        ['desktop', desktopText(machine)],
        ['memory', memory.total === null ? '' : size(memory.total)],
        ...machine.disks.map((disk): [string, string] => [
            'disk',
            `${disk.place} (${disk.type}): ${t('sysinfo.machine.free', {
                free: size(disk.free),
                total: size(disk.total),
            })}`,
        ]),
        ...machine.graphics.map((card): [string, string] => ['graphics', graphicsText(card)]),
        ...machine.screens.map((screen): [string, string] => ['screen', screenText(screen)]),
        ['languages', machine.languages.map((code) => languageName(code, locale)).join(', ')],
    ];
    return known
        .filter(([, value]) => value !== '')
        .map(([name, value]) => ({ label: t(`sysinfo.machine.${name}`), value, isPictured: true }));
}
