import { Chromium, waitFor, type Page } from 'browser-driver';
import { afterAll, beforeAll, expect, inject } from 'vitest';
import { allScenes } from './allscenes';
import { openView, sentCommands, type Answer, type Scene, type ViewOptions } from './harness.mjs';

const scenes = await allScenes();

/** A scene by its name, with other answers where `changes` has some. */
export function named(name: string, changes: Record<string, Answer | Answer[]> = {}): Scene {
    const scene = scenes.find((candidate) => candidate.name === name);
    if (!scene) throw new Error(`no scene ${name}`);
    return { ...scene, answers: { ...scene.answers, ...changes } };
}

let browser: Chromium;

/** Connects the tests of a file to the one browser that all of them share. */
export function useBrowser(): void {
    beforeAll(async () => {
        browser = await Chromium.connect(inject('browserPort'));
    });
    afterAll(() => browser.close());
}

/** Opens the view of a scene in the browser of useBrowser(). */
export function open(scene: Scene, options?: ViewOptions): Promise<Page> {
    return openView(browser, inject('builtPage'), scene, options);
}

/** Plays a scene until it shows what it should, and goes on with `test`. */
export async function play(scene: Scene, test: (view: Page) => Promise<void>): Promise<void> {
    const view = await open(scene);
    await scene.act?.(view);
    await view.getByText(scene.shows).waitFor();
    await test(view);
    expect(view.complaints).toEqual([]);
    await view.close();
}

export async function lastSent(view: Page, count = 1) {
    return (await sentCommands(view)).slice(-count);
}

/** Waits for the command, with a bound, because keys and clicks act in their own time. */
export async function sent(view: Page, command: string, times = 1): Promise<void> {
    await waitFor(
        async () =>
            (await sentCommands(view)).filter((one) => one.command === command).length >= times,
        { what: `the command ${command}` },
    );
}
