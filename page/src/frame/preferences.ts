/** Theme, language and text size: what the host says, unless the user chose otherwise. */

type Theme = 'light' | 'dark' | 'contrast';
export type Language = 'en' | 'zh-CN';

export const themes = ['system', 'light', 'dark', 'contrast'] as const;
export const languages = ['system', 'en', 'zh-CN'] as const;
export const textSizes = [100, 125, 150, 200] as const;

export interface Preferences {
    theme: (typeof themes)[number];
    language: (typeof languages)[number];
    textSize: (typeof textSizes)[number];
}

/** What the host reports of the desktop; a browser without a host has its own language only. */
interface Surroundings {
    theme?: Theme;
    language: string;
}

export const storageKey = 'assistant.preferences';

export const defaults: Preferences = { theme: 'system', language: 'system', textSize: 100 };

/** The next larger or smaller text, or the same if there is none. */
export function nextTextSize(size: Preferences['textSize'], step: 1 | -1): Preferences['textSize'] {
    return textSizes[textSizes.indexOf(size) + step] ?? size;
}

/** The stored choice; whatever is missing or unknown in it falls back to the default. */
export function parsePreferences(stored: string | null): Preferences {
    let found: Partial<Record<keyof Preferences, unknown>> = {};
    try {
        found = (JSON.parse(stored ?? '{}') as typeof found | null) ?? {};
    } catch {
        // Not ours or damaged: the defaults hold, and the next choice overwrites it.
    }
    return {
        theme: themes.find((theme) => theme === found.theme) ?? defaults.theme,
        language: languages.find((language) => language === found.language) ?? defaults.language,
        textSize: textSizes.find((size) => size === found.textSize) ?? defaults.textSize,
    };
}

export function readPreferences(): Preferences {
    try {
        return parsePreferences(localStorage.getItem(storageKey));
    } catch {
        return { ...defaults };
    }
}

/** Keeps the choice; a page that may not store anything has it until it closes. */
export function writePreferences(preferences: Preferences): void {
    try {
        localStorage.setItem(storageKey, JSON.stringify(preferences));
    } catch {
        console.warn('This page may not keep preferences.');
    }
}

export function surroundings(): Surroundings {
    return { theme: window.helio?.theme, language: window.helio?.language ?? navigator.language };
}

export function themeOf(preferences: Preferences, { theme }: Surroundings): Theme {
    if (preferences.theme !== 'system') return preferences.theme;
    return theme === 'dark' ? 'dark' : 'light';
}

export function languageOf(preferences: Preferences, { language }: Surroundings): Language {
    if (preferences.language !== 'system') return preferences.language;
    return /^zh\b|^zh_/i.test(language) ? 'zh-CN' : 'en';
}

/** Makes the document look as chosen. */
export function applyPreferences(preferences: Preferences): void {
    const root = document.documentElement;
    const theme = themeOf(preferences, surroundings());
    root.classList.toggle('dark', theme !== 'light');
    root.classList.toggle('contrast', theme === 'contrast');
    root.lang = languageOf(preferences, surroundings());
    root.style.fontSize = `${preferences.textSize}%`;
}
