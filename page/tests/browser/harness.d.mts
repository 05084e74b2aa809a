import type { Browser, Page } from 'playwright-core';

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
    /** Brings the opened view to what the scene shows. */
    act?: (page: ViewPage) => Promise<unknown>;
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
}

export type ViewPage = Page & { complaints: string[] };

export const chromiumFlags: string[];
export const chromiumPath: string;
export function openView(
    browser: Browser,
    directory: string,
    scene: Pick<Scene, 'page' | 'answers' | 'withoutHost'>,
    options?: ViewOptions,
): Promise<ViewPage>;
export function sentCommands(
    page: Page,
): Promise<{ command: string; args?: Record<string, unknown> }[]>;
export function unexpectedCommands(page: Page): Promise<string[]>;
export function accessibilityFindings(page: Page): Promise<string[]>;
