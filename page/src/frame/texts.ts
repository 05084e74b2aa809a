import { createI18n, useI18n } from 'vue-i18n';
import type { Failure } from '@/client';
import type { Language } from './preferences';

/** The texts of one language by their keys: the frame's, and the view's under its name. */
export interface Catalogue {
    [key: string]: string | Catalogue;
}

declare global {
    interface Window {
        /** JSON of the view's catalogue of each language; the build puts it before the script. */
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

const units = ['byte', 'kilobyte', 'megabyte', 'gigabyte', 'terabyte'] as const;
const step = 1000;

/** A size for people, such as "1.2 MB". */
function sizeText(bytes: number, locale: string): string {
    const power = bytes < step ? 0 : Math.floor(Math.log10(bytes) / 3);
    const index = Math.min(power, units.length - 1);
    return new Intl.NumberFormat(locale, {
        style: 'unit',
        unit: units[index],
        maximumFractionDigits: index ? 1 : 0,
    }).format(bytes / step ** index);
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
        size: (bytes: number): string => sizeText(bytes, locale.value),
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
