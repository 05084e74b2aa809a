import { onBeforeUnmount, onMounted, ref, type Ref } from 'vue';
import type { Client } from '@/client';

/**
 * Takes the files that are dropped anywhere on the page, in a shell that tells their paths.
 * `isOver` is true while some are held above it.
 */
export function useDroppedFiles(
    { window: shell }: Client,
    take: (paths: string[]) => unknown,
): { isOver: Ref<boolean> } {
    const isOver = ref(false);
    const hasFiles = ({ dataTransfer }: DragEvent): boolean =>
        dataTransfer?.types.includes('Files') ?? false;

    function over(event: DragEvent): void {
        if (!hasFiles(event)) return;
        event.preventDefault();
        isOver.value = true;
    }
    function leave({ relatedTarget }: DragEvent): void {
        if (!relatedTarget) isOver.value = false;
    }
    async function drop(event: DragEvent): Promise<void> {
        if (!hasFiles(event)) return;
        event.preventDefault();
        isOver.value = false;
        const dropped = await shell.dropped();
        if (dropped.kind === 'done' && dropped.value.length) take(dropped.value);
    }

    onMounted(() => {
        if (!shell.takesDrops) return;
        document.addEventListener('dragover', over);
        document.addEventListener('dragleave', leave);
        document.addEventListener('drop', drop);
    });
    onBeforeUnmount(() => {
        document.removeEventListener('dragover', over);
        document.removeEventListener('dragleave', leave);
        document.removeEventListener('drop', drop);
    });
    return { isOver };
}
