import { onBeforeUnmount, onMounted } from 'vue';
import type { Client } from '@/client';

/** The bytes of a picture as base64. */
function base64Of(picture: Blob): Promise<string> {
    return new Promise((resolve, reject) => {
        const reader = new FileReader();
        reader.onload = () => {
            const address = String(reader.result);
            resolve(address.slice(address.indexOf(',') + 1));
        };
        reader.onerror = () => reject(reader.error ?? new Error('not read'));
        reader.readAsDataURL(picture);
    });
}

/** Adds pictures that are pasted anywhere on the page, in a shell that keeps them. */
export function usePastedPictures(
    { draft }: Client,
    add: (path: string) => void,
    fail: () => void,
): void {
    async function paste(event: ClipboardEvent): Promise<void> {
        const items = [...(event.clipboardData?.items ?? [])];
        const picture = items.find(({ type }) => type === 'image/png')?.getAsFile();
        // Text that comes with a picture, as from a document, is what is meant.
        if (!picture || items.some(({ type }) => type === 'text/plain')) return;
        event.preventDefault();
        const path = await draft.keepPicture(await base64Of(picture));
        if (path) add(path);
        else fail();
    }
    onMounted(() => {
        if (draft.keepsPictures) document.addEventListener('paste', paste);
    });
    onBeforeUnmount(() => document.removeEventListener('paste', paste));
}
