/** Runs inline in the head, so that the first paint already has the right theme and language. */
import { applyPreferences, readPreferences } from './preferences';

declare global {
    interface Window {
        /** Brings the script of the view of that page, which runs when the view is to be shown. */
        addView: (page: string, run: () => void) => void;
    }
}

window.addView = (_page, run) => run();
applyPreferences(readPreferences());
document.documentElement.classList.toggle(
    'one-window',
    window.helio?.operations?.includes('window.sidebar') ?? false,
);
