/** Milliseconds to wait for a frame, which may never come for a window that nobody sees. */
const longestWait = 100;

/** Calls back once what the page already holds is on the screen; at once where nothing is drawn. */
export function whenDrawn(callback: () => void): void {
    if (document.hidden) {
        callback();
        return;
    }
    let called = false;
    const callOnce = (): void => {
        if (!called) callback();
        called = true;
    };
    // The frame is drawn behind its callbacks.
    requestAnimationFrame(() => setTimeout(callOnce));
    setTimeout(callOnce, longestWait);
}
