/** In the page that waits for its first view: shows that view without a new document. */
import { applyPreferences, readPreferences } from './preferences';

interface ViewFiles {
    scripts: string[];
    styles: string[];
}

/** What each view has beyond the scripts and styles of all, by its page; the build knows. */
declare const filesOfViews: Record<string, ViewFiles>;

declare global {
    interface Window {
        /** Begins to show a view; false if this page cannot, or shows one already. */
        showView?: (page: string) => boolean;
    }
}

interface Reading {
    styles: HTMLLinkElement[];
    /** Whether all files are there. */
    whole: Promise<boolean>;
}

const views = new Map<string, () => void>();
const readings = new Map<string, Reading>();

window.addView = (page, run) => views.set(page, run);

/** Adds an element that loads a file; gives whether the file was there. */
function loaded(element: HTMLLinkElement | HTMLScriptElement): Promise<boolean> {
    return new Promise((resolve) => {
        element.addEventListener('load', () => resolve(true));
        element.addEventListener('error', () => resolve(false));
        document.head.append(element);
    });
}

/** Has Chromium read the files of a view, without effect until the view is shown. */
function read(page: string, files: ViewFiles): Reading {
    const known = readings.get(page);
    if (known) return known;
    const styles = files.styles.map((href) =>
        Object.assign(document.createElement('link'), {
            rel: 'stylesheet',
            media: 'not all',
            href,
        }),
    );
    const scripts = files.scripts.map((src) =>
        Object.assign(document.createElement('script'), { async: false, src }),
    );
    const all = Promise.all([...styles, ...scripts].map(loaded));
    const reading = { styles, whole: all.then((found) => found.every(Boolean)) };
    readings.set(page, reading);
    return reading;
}

/** Reads every view, one after the other, until one is shown. */
async function readAhead(): Promise<void> {
    for (const [page, files] of Object.entries(filesOfViews)) {
        if (location.hash) return;
        await read(page, files).whole;
    }
}

window.showView = (page) => {
    const isKnown = Object.prototype.hasOwnProperty.call(filesOfViews, page);
    const files = isKnown ? filesOfViews[page] : undefined;
    if (!files || location.hash) return false;
    // A second view would meet what the first one has left.
    history.replaceState(null, '', `#${page}`);
    // They may have changed since this page was loaded.
    applyPreferences(readPreferences());
    const { styles, whole } = read(page, files);
    for (const style of styles) style.media = 'all';
    void whole.then((isWhole) => {
        const run = views.get(page);
        // Without its files the view's own page says what is wrong.
        if (isWhole && run) run();
        else location.replace(page);
    });
    return true;
};

window.addEventListener('load', () => void readAhead());
