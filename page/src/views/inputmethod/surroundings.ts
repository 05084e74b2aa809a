import type { Variable } from '@/client';

/** The variables by which programs find the input method, and those that tell the desktop. */
export const watchedVariables = [
    'QT_IM_MODULE',
    'XMODIFIERS',
    'GTK_IM_MODULE',
    'XDG_CURRENT_DESKTOP',
    'XDG_SESSION_TYPE',
] as const;

export const frameworks = ['fcitx5', 'ibus', 'fcitx'] as const;
export type Framework = (typeof frameworks)[number];

export const desktops = ['kde', 'gnome', 'other'] as const;
export type Desktop = (typeof desktops)[number];

export const packageTools = ['apt', 'dnf', 'pacman'] as const;
export type PackageTool = (typeof packageTools)[number];

/** The value of a variable; null when it is not set. */
export function variableValue(variables: Variable[], name: string): string | null {
    return variables.find((variable) => variable.name === name)?.value ?? null;
}

/** Which framework the environment names; fcitx 5 takes the same name as its predecessor. */
export function likelyFramework(variables: Variable[]): Framework {
    const named = ['QT_IM_MODULE', 'XMODIFIERS', 'GTK_IM_MODULE'].map(
        (name) => variableValue(variables, name)?.toLowerCase() ?? '',
    );
    return named.find((value) => /fcitx|ibus/.test(value))?.includes('ibus') ? 'ibus' : 'fcitx5';
}

export function likelyDesktop(variables: Variable[]): Desktop {
    const desktop = variableValue(variables, 'XDG_CURRENT_DESKTOP')?.toLowerCase() ?? '';
    if (desktop.includes('kde')) return 'kde';
    return /gnome|unity|ubuntu/.test(desktop) ? 'gnome' : 'other';
}

export function isWayland(variables: Variable[]): boolean {
    return variableValue(variables, 'XDG_SESSION_TYPE')?.toLowerCase() === 'wayland';
}
