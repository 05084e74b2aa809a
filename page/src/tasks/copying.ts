import type { Ref } from 'vue';
import { failureText, useTexts } from '../frame/texts';
import { useClient } from '../frame/view';

/** Copies text to the clipboard and says so in `message`. */
export function useCopying(message: Ref<string>): (text: string) => Promise<void> {
    const { t } = useTexts();
    const client = useClient();
    return async (text) => {
        const outcome = await client.copyText(text);
        message.value = outcome.kind === 'done' ? t('common.copied') : failureText(t, outcome);
    };
}
