import { createI18n, useI18n } from 'vue-i18n';
import type { Failure } from '@/client';
import english from '@/locales/en.json';
import chinese from '@/locales/zh-CN.json';
import type { Language } from './preferences';

export function createTexts(language: Language) {
    return createI18n({
        legacy: false,
        locale: language,
        fallbackLocale: 'en',
        messages: { en: english, 'zh-CN': chinese },
    });
}

export type Translate = (
    key: string, values?: Record<string, string | number>, count?: number) => string;

/** The texts of the current language. */
export function useTexts(): { t: Translate } {
    const { t } = useI18n({ useScope: 'global' });
    return {
        t: (key, values = {}, count) =>
            count === undefined ? t(key, values) : t(key, values, count),
    };
}

/** Sentences that a view has for the failures it knows better than the general ones. */
export type FailureTexts = Partial<Record<Failure['kind'], string>>;

/** A failure in a sentence that says what to do. */
export function failureText(t: Translate, failure: Failure, own: FailureTexts = {}): string {
    const reason = 'reason' in failure ? failure.reason : '';
    return t(own[failure.kind] ?? `failure.${failure.kind}`, { reason });
}
