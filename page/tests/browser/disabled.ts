import type { Page } from 'browser-driver';

/**
 * Names of the controls that cannot be used and do not say why. What a control does and its key
 * are no reason.
 */
export function unexplained(view: Page): Promise<string[]> {
    return view.evaluate(() =>
        [
            ...document.querySelectorAll<HTMLElement>(
                'button:disabled, input:disabled, textarea:disabled, [aria-disabled="true"]',
            ),
        ]
            .filter(
                (element) =>
                    element.getClientRects().length > 0 &&
                    /^$|\(F5\)/.test(element.closest('[title]')?.getAttribute('title') ?? ''),
            )
            .map((element) => element.getAttribute('aria-label') ?? element.innerText),
    );
}
