import { languages, textSizes, themes, type Preferences } from '@/frame/preferences';
import type { Translate } from '@/frame/texts';
import { matcher } from '@/tasks/filter';

/** What the finder finds: a tool, a finding, a setting. */
export interface Entry {
    kind: 'tool' | 'finding' | 'setting';
    title: string;
    detail: string;
    /** Whether the chosen thing takes the focus; otherwise it returns to where it was. */
    takesFocus?: boolean;
    act: () => void;
}

export function toolEntries<Tool extends { name: string }>(
    tools: Tool[],
    t: Translate,
    open: (tool: Tool) => void,
): Entry[] {
    return tools.map((tool) => ({
        kind: 'tool',
        title: t(`${tool.name}.title`),
        detail: t(`${tool.name}.what`),
        act: () => open(tool),
    }));
}

export function settingEntries(preferences: Preferences, t: Translate): Entry[] {
    const entry = (title: string, detail: string, act: () => void): Entry => ({
        kind: 'setting',
        title,
        detail,
        act,
    });
    return [
        ...themes.map((theme) =>
            entry(t('settings.theme'), t(`settings.themes.${theme}`), () => {
                preferences.theme = theme;
            }),
        ),
        ...languages.map((language) =>
            entry(t('settings.language'), t(`settings.languages.${language}`), () => {
                preferences.language = language;
            }),
        ),
        ...textSizes.map((size) =>
            entry(t('settings.textSize'), t('settings.percent', { size }), () => {
                preferences.textSize = size;
            }),
        ),
    ];
}

/** The entries that contain all words; those with one in the title come first. */
export function matching(entries: Entry[], query: string): Entry[] {
    const matches = matcher(query);
    const found = entries.filter(({ title, detail }) => matches(title, detail));
    const inTitle = found.filter(({ title }) => matches(title));
    return [...inTitle, ...found.filter((entry) => !inTitle.includes(entry))];
}
