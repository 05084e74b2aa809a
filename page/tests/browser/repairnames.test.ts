import { describe, expect, it } from 'vitest';
import { named, play, useBrowser } from './playing';

useBrowser();

describe('what a fix writes', () => {
    it('has a name of its own for who cannot see the path beside it', () =>
        play(named('home-planned'), async (view) => {
            const names = await view.evaluate(() =>
                [...document.querySelectorAll('.change-list summary')].map((summary) =>
                    summary.getAttribute('aria-label'),
                ),
            );
            expect(names.length).toBeGreaterThan(0);
            for (const name of names) expect(name).toMatch(/^Content of \/.+/);
        }));
});
