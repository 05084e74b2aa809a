import type { Client } from '@/client';

/** The draft of the feedback with a text added to its description, unless it is there already. */
function withResult(kept: string, result: string): string {
    let draft: Record<string, unknown> = {};
    try {
        draft = (JSON.parse(kept) as typeof draft | null) ?? {};
    } catch {
        // There is none, or it is damaged: the feedback view would begin a new one, too.
    }
    const typed = typeof draft.description === 'string' ? draft.description : '';
    if (typed.includes(result)) return kept;
    const description = [typed, result].filter(Boolean).join('\n\n');
    return JSON.stringify({ ...draft, description });
}

/** Adds a result to the feedback that is not sent yet; gives whether it could be kept. */
export async function keepForFeedback({ draft }: Client, result: string): Promise<boolean> {
    return draft.keep(withResult(await draft.read(), result));
}
