import { afterEach, beforeEach, describe, expect, it, vi } from 'vitest';
import { whenDrawn } from '@/frame/whendrawn';

describe('what waits for the screen', () => {
    const callback = vi.fn();
    let frames: FrameRequestCallback[];

    beforeEach(() => {
        frames = [];
        vi.useFakeTimers();
        vi.stubGlobal('document', { hidden: false });
        vi.stubGlobal('requestAnimationFrame', (frame: FrameRequestCallback) => frames.push(frame));
    });
    afterEach(() => {
        vi.useRealTimers();
        vi.unstubAllGlobals();
        callback.mockReset();
    });

    it('comes behind the first frame, once', () => {
        whenDrawn(callback);
        expect(callback).not.toHaveBeenCalled();
        frames.forEach((frame) => frame(0));
        expect(callback).not.toHaveBeenCalled();
        vi.runAllTimers();
        expect(callback).toHaveBeenCalledOnce();
    });

    it('comes in the end where no frame does', () => {
        whenDrawn(callback);
        vi.runAllTimers();
        expect(callback).toHaveBeenCalledOnce();
    });

    it('comes at once in a window that is not seen', () => {
        vi.stubGlobal('document', { hidden: true });
        whenDrawn(callback);
        expect(callback).toHaveBeenCalledOnce();
        expect(frames).toEqual([]);
    });
});
