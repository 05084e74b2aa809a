/** In the page that waits for its first view: shows views without a new document for each. */
import { applyPreferences, readPreferences } from './preferences';

interface ViewFiles {
    scripts: string[];
    styles: string[];
}

/** What each view has beyond the scripts and styles of all, by its page; the build knows. */
declare const filesOfViews: Record<string, ViewFiles>;

declare global {
    interface Window {
        /** Begins to show a view, in place of the one before; false if this page cannot. */
        showView?: (page: string) => boolean;
        /** Waits again, and keeps what was read; false if this page cannot. */
        hideView?: () => boolean;
        /** Ends the view that is shown; it has said so itself. */
        endView?: () => void;
    }
}

interface Reading {
    styles: HTMLLinkElement[];
    /** Whether all files are there. */
    whole: Promise<boolean>;
}

const views = new Map<string, () => void>();
const readings = new Map<string, Reading>();
/** The page of the view that is shown; empty while none is. */
let shown = '';
/** Counts what was shown. */
let turn = 0;

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

/** Has Chromium compile what all views run: it runs a view that nobody sees. */
async function rehearse(): Promise<void> {
    const script = Object.assign(document.createElement('script'), { src: 'rehearsal.js' });
    if (!(await loaded(script)) || shown) return;
    views.get('rehearsal')?.();
    await new Promise((resolve) => setTimeout(resolve));
    if (!shown) end();
}

/** Reads every view, one after the other, until one is shown. */
async function readAhead(): Promise<void> {
    for (const [page, files] of Object.entries(filesOfViews)) {
        if (shown) return;
        await read(page, files).whole;
    }
}

/** Ends the view that is shown; false if something of it may be left. */
function end(): boolean {
    turn += 1;
    for (const style of readings.get(shown)?.styles ?? []) style.media = 'not all';
    shown = '';
    try {
        window.endView?.();
        return true;
    } catch (error) {
        console.error(error);
        return false;
    } finally {
        delete window.endView;
    }
}

async function run(page: string, { styles, whole }: Reading): Promise<void> {
    const mine = turn;
    for (const style of styles) style.media = 'all';
    const isWhole = await whole;
    if (mine !== turn) return;
    const view = views.get(page);
    // Without its files the view's own page says what is wrong.
    if (isWhole && view) view();
    else location.replace(page);
}

window.showView = (page) => {
    const isKnown = Object.prototype.hasOwnProperty.call(filesOfViews, page);
    const files = isKnown ? filesOfViews[page] : undefined;
    if (!files) return false;
    if (!end()) {
        location.replace(page);
        return true;
    }
    shown = page;
    history.replaceState(null, '', `#${page}`);
    // They may have changed since this page was loaded.
    applyPreferences(readPreferences());
    void run(page, read(page, files));
    return true;
};

window.hideView = () => {
    if (!end()) return false;
    history.replaceState(null, '', location.pathname);
    void readAhead();
    return true;
};

window.addEventListener('load', () => void rehearse().then(readAhead));
