import { createApp, inject, reactive, watch, type Component, type InjectionKey } from 'vue';
import { createClient, type Client } from '@/client';
import {
    applyPreferences,
    languageOf,
    parsePreferences,
    readPreferences,
    storageKey,
    surroundings,
    writePreferences,
    type Language,
    type Preferences,
} from './preferences';
import { endingHost } from './endinghost';
import { createTexts, type Catalogue } from './texts';
import { whenDrawn } from './whendrawn';
import './base.css';

const clientKey: InjectionKey<Client> = Symbol('client');
const preferencesKey: InjectionKey<Preferences> = Symbol('preferences');

function need<Value>(key: InjectionKey<Value>): Value {
    const value = inject(key);
    if (value === undefined) throw new Error('used outside a started view');
    return value;
}

export const useClient = (): Client => need(clientKey);

/** The user's choices; changing a member applies and keeps it, in all open windows. */
export const usePreferences = (): Preferences => need(preferencesKey);

/**
 * Keeps controls from acting that cannot be used now. They are not `disabled`, because that would
 * take the focus from them.
 */
function guardControls(): void {
    const guard = (event: MouseEvent): void => {
        if (!(event.target as Element).closest('[aria-disabled="true"]')) return;
        event.preventDefault();
        event.stopImmediatePropagation();
    };
    window.addEventListener('click', guard, true);
}

/**
 * Tells screen readers where the focus is when this page gets it back from the other page of the
 * window: Chromium does not, since within the page nothing has changed.
 */
function announceFocus(): void {
    window.addEventListener('focus', () => {
        const focused = document.activeElement;
        if (!(focused instanceof HTMLElement) || focused === document.body) return;
        focused.blur();
        focused.focus({ preventScroll: true });
    });
}

/** Has screen readers say which view has opened. The main page has no heading there. */
function focusHeading(): void {
    const heading = document.querySelector<HTMLElement>('h1.title-bar-title');
    if (!heading || document.activeElement !== document.body) return;
    heading.tabIndex = -1;
    heading.focus({ preventScroll: true });
}

/** The catalogue of a language: of the frame and of the view. */
const catalogueOf = (language: Language): Catalogue => ({
    ...(JSON.parse(window.frameTexts[language]) as Catalogue),
    ...(JSON.parse(window.pageTexts[language]) as Catalogue),
});

/** What the document does for each of the views that it shows, one after the other. */
let isPrepared = false;
function prepareDocument(): void {
    if (isPrepared) return;
    isPrepared = true;
    guardControls();
    announceFocus();
}

/** The user's choices in use, here and in all other windows; the second ends that. */
function followPreferences(applied: () => void): [Preferences, () => void] {
    const preferences = reactive(readPreferences());
    const stop = watch(preferences, () => {
        applied();
        writePreferences(preferences);
    });
    const follow = ({ key, newValue }: StorageEvent): void => {
        if (key === storageKey) Object.assign(preferences, parsePreferences(newValue));
    };
    window.addEventListener('storage', follow);
    return [
        preferences,
        () => {
            stop();
            window.removeEventListener('storage', follow);
        },
    ];
}

/**
 * Mounts a view over the page's outline, which is painted first. `name` is the view's
 * folder.
 */
export function startView(view: Component, name: string): void {
    const host = endingHost(() => window.helio);
    const client = createClient(host.host, window);
    const [preferences, stopFollowing] = followPreferences(() => apply());
    const language = () => languageOf(preferences, surroundings());
    const texts = createTexts(language(), catalogueOf);
    const apply = (): void => {
        applyPreferences(preferences);
        texts.show(language());
        document.title = texts.t(`${name}.title`);
    };
    apply();
    prepareDocument();
    const application = createApp(view)
        .use(texts.i18n)
        .provide(clientKey, client)
        .provide(preferencesKey, preferences);
    const mount = (): void => {
        application.mount('#view');
        performance.mark('view-mounted');
    };
    // The page that has waited for this view has no outline to draw first.
    if (window.showView) {
        window.endView = () => {
            host.end();
            stopFollowing();
            application.unmount();
            performance.clearMarks('view-mounted');
        };
        mount();
        // Screen readers learn of the focus only where they know what has it.
        whenDrawn(focusHeading);
    } else {
        whenDrawn(() => {
            mount();
            focusHeading();
        });
    }
}
