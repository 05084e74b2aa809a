import type { Chromium, Page } from 'browser-driver';

export interface Notice {
    callback: string;
    result: unknown;
    after?: number;
}

export interface Answer {
    result?: unknown;
    never?: boolean;
    late?: boolean;
    refused?: string;
    notices?: Notice[];
    lines?: object[];
}

declare global {
    interface Window {
        /** Lets the answers come that are late. */
        answerLate(): void;
    }
}

export interface Scene {
    name: string;
    page: string;
    answers?: Record<string, Answer | Answer[]>;
    withoutHost?: boolean;
    /** The shell offers the library's commands only. */
    withoutDoctor?: boolean;
    /** For a shell whose doctor watches the library's repairs. */
    watched?: boolean;
    /** For a shell whose doctor explains what it finds. */
    explained?: boolean;
    /** For a shell that describes the suite. */
    suited?: boolean;
    /** The page of the view that the main page stands beside, in a shell with one window. */
    beside?: string;
    /** For a shell that measures the suite's start. */
    measured?: boolean;
    /** For a shell that compares reports. */
    compares?: boolean;
    /** For a shell whose checks of the environment give their answers. */
    checksAll?: boolean;
    /** For a shell that keeps the draft of the feedback. */
    keeps?: boolean;
    /** For a shell that lists crash dumps. */
    listsDumps?: boolean;
    /** For a shell that looks at any path. */
    looks?: boolean;
    /** For a shell that asks the desktop about associations. */
    asks?: boolean;
    /** For a shell that lists all processes. */
    lists?: boolean;
    /** Further operations of the shell. */
    offers?: string[];
    /** Brings the opened view to what the scene shows. */
    act?: (page: Page) => Promise<unknown>;
    /** A text that the view then shows. */
    shows: string | RegExp;
    /** A text that it shows after that, when the late answers have come. */
    later?: string | RegExp;
}

export interface ViewOptions {
    theme?: 'light' | 'dark';
    language?: string;
    textSize?: number;
    width?: number;
    height?: number;
    /** Of the screen. */
    scale?: number;
    /** For a user who wants less motion. */
    stillness?: boolean;
}

export function openView(
    browser: Chromium,
    directory: string,
    scene: Pick<
        Scene,
        'page' | 'answers' | 'withoutHost' | 'withoutDoctor' | 'watched' | 'explained'
    >,
    options?: ViewOptions,
): Promise<Page>;
export function sentCommands(
    page: Page,
): Promise<{ command: string; args?: Record<string, unknown> }[]>;
export function unexpectedCommands(page: Page): Promise<string[]>;
export function accessibilityFindings(
    page: Page,
    options?: { bothThemes?: boolean },
): Promise<string[]>;
