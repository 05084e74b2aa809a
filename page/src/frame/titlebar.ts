import { onBeforeUnmount, onMounted } from 'vue';
import type { Client } from '@/client';

/** Pixels that the pointer moves before a press becomes the move of the window. */
const slop = 3;

/** Lets the title bar move the window, and a double click maximise it. Gives its press handler. */
export function useTitleBar(client: Client): (event: MouseEvent) => void {
    let pressedAt: MouseEvent | undefined;
    let moving = false;

    function press(event: MouseEvent): void {
        const onControl = (event.target as Element).closest('button, [role="dialog"]');
        if (event.button !== 0 || onControl) return;
        if (event.detail === 2 && client.window.isShared) void client.window.toggleMaximised();
        else pressedAt = event;
    }

    function move(event: MouseEvent): void {
        if (!pressedAt || moving) return;
        const { screenX, screenY } = pressedAt;
        if (Math.hypot(event.screenX - screenX, event.screenY - screenY) < slop) return;
        moving = true;
        void client.pressTitleBar();
    }

    function release(): void {
        pressedAt = undefined;
        if (moving) void client.releaseTitleBar();
        moving = false;
    }

    onMounted(() => {
        window.addEventListener('mousemove', move);
        window.addEventListener('mouseup', release);
        window.addEventListener('blur', release);
    });
    onBeforeUnmount(() => {
        window.removeEventListener('mousemove', move);
        window.removeEventListener('mouseup', release);
        window.removeEventListener('blur', release);
    });
    return press;
}
