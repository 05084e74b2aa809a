import { shallowRef } from 'vue';
import type { ServerRequest } from '@/client';

export interface SentRequest {
    number: number;
    sent: Date;
    request: ServerRequest;
    isGood: boolean;
    /** 0 without an answer, or where the status of a good one is not told. */
    status: number;
    milliseconds: number | null;
}

const mostKept = 20;

/** The requests of this view, the newest first. */
export function useSentRequests() {
    const entries = shallowRef<SentRequest[]>([]);
    let last = 0;
    return {
        entries,
        add(entry: Omit<SentRequest, 'number' | 'sent'>): void {
            last += 1;
            const added = { ...entry, number: last, sent: new Date() };
            entries.value = [added, ...entries.value].slice(0, mostKept);
        },
    };
}
