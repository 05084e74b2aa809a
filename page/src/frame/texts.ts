import { createI18n, useI18n } from 'vue-i18n';
import type { Failure } from '@/client';
import type { Language } from './preferences';

/** The texts of one language by their keys: the frame's, and the view's under its name. */
export interface Catalogue {
    [key: string]: string | Catalogue;
}

declare global {
    interface Window {
        /** JSON of each language's catalogue; the build puts it before the scripts. */
        frameTexts: Record<Language, string>;
        /** The same for what the view has beyond it. */
        pageTexts: Record<Language, string>;
    }
}

/** Texts whose languages are read when they are first shown. */
export function createTexts(start: Language, catalogueOf: (language: Language) => Catalogue) {
    const i18n = createI18n({
        legacy: false,
        locale: start,
        // All languages have the same keys.
        fallbackLocale: false,
        messages: { [start]: catalogueOf(start) } as Record<Language, Catalogue>,
        missing: (language, key) => console.error(`There is no text ${key} in ${language}.`),
    });
    const { global } = i18n;
    function show(language: Language): void {
        if (!global.availableLocales.includes(language)) {
            global.setLocaleMessage(language, catalogueOf(language));
        }
        global.locale.value = language;
    }
    return { i18n, t: global.t, show };
}

export type Translate = (
    key: string,
    values?: Record<string, string | number>,
    count?: number,
) => string;

const units = ['KiB', 'MiB', 'GiB', 'TiB'] as const;
const step = 1024;

/** A size for people, such as "1.2 MiB", in the units of findings and of the machine's memory. */
export function sizeText(bytes: number, t: Translate, locale: string): string {
    if (bytes < step) return t('units.bytes', { count: bytes }, bytes);
    let size = bytes / step;
    let index = 0;
    // What would be rounded up to a whole step has the next unit.
    while (index < units.length - 1 && size >= step - 0.05) {
        size /= step;
        index += 1;
    }
    const number = size.toLocaleString(locale, { maximumFractionDigits: 1 });
    return `${number} ${units[index]!}`;
}

/** The texts of the current language, and how it writes numbers and times. */
export function useTexts() {
    const { t, locale } = useI18n({ useScope: 'global' });
    const translate: Translate = (key, values = {}, count) =>
        count === undefined ? t(key, values) : t(key, values, count);
    return {
        t: translate,
        locale,
        /** With exactly so many digits after the point. */
        number: (value: number, digits = 0): string =>
            value.toLocaleString(locale.value, {
                minimumFractionDigits: digits,
                maximumFractionDigits: digits,
            }),
        size: (bytes: number): string => sizeText(bytes, translate, locale.value),
        time: (date: Date): string => date.toLocaleTimeString(locale.value),
        /** A time of today, or a day and a time. */
        moment: (date: Date): string => {
            const isToday = date.toDateString() === new Date().toDateString();
            return date.toLocaleString(locale.value, {
                ...(isToday ? {} : { dateStyle: 'medium' }),
                timeStyle: 'short',
            });
        },
    };
}

/** Sentences that a view has for the failures it knows better than the general ones. */
type FailureTexts = Partial<Record<Failure['kind'], string>>;

/** A failure in a sentence that says what to do. */
export function failureText(t: Translate, failure: Failure, own: FailureTexts = {}): string {
    const reason = 'reason' in failure ? failure.reason : '';
    return t(own[failure.kind] ?? `failure.${failure.kind}`, { reason });
}
