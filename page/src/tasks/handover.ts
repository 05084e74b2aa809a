import { ref, type Ref } from 'vue';
import { failureText, useTexts } from '../frame/texts';
import { useClient } from '../frame/view';

/** The views that feedback knows; the library keeps a document with "layout" and "print". */
export const feedbackOrigins = ['layout', 'print', 'missingfonts', 'crash'] as const;
export type FeedbackOriginName = (typeof feedbackOrigins)[number];

/** Opens the feedback view, which learns from which view the user comes. */
export function useHandOver(
    origin: FeedbackOriginName,
    message: Ref<string>,
): { handOver: () => Promise<void>; handingOver: Ref<boolean> } {
    const { t } = useTexts();
    const client = useClient();
    const handingOver = ref(false);
    async function handOver(): Promise<void> {
        if (handingOver.value) return;
        handingOver.value = true;
        const remembered = await client.rememberFeedbackOrigin(origin);
        const outcome =
            remembered.kind === 'done' ? await client.openView('feedback.html', '') : remembered;
        handingOver.value = false;
        if (outcome.kind !== 'done') message.value = failureText(t, outcome);
    }
    return { handOver, handingOver };
}
