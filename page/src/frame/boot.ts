/** Runs inline in the head, so that the first paint already has the right theme and language. */
import { applyPreferences, readPreferences } from './preferences';

applyPreferences(readPreferences());
document.documentElement.classList.toggle(
    'one-window',
    window.helio?.operations?.includes('window.sidebar') ?? false,
);
