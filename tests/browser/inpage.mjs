// These functions run in the page, which may be one of Chromium 87. Each stands by itself: only
// its own source is sent.

/** The elements that the steps of a locator lead to. */
export function elementsOf(steps) {
    const nameOf = (element) => {
        const labels = [...(element.labels || [])].map((label) => label.textContent).join(' ');
        const name = element.getAttribute('aria-label') || labels || element.placeholder;
        return (name || element.textContent).trim();
    };
    const isVisible = (element) => {
        const { width, height } = element.getBoundingClientRect();
        return width > 0 && height > 0 && getComputedStyle(element).visibility === 'visible';
    };
    const hasText = (element, { source, flags }) =>
        new RegExp(source, flags).test(element.textContent.replace(/\s+/g, ' ').trim());
    const inside = (scopes, selector) => [
        ...new Set(scopes.flatMap((scope) => [...scope.querySelectorAll(selector)])),
    ];
    const innermost = (elements) =>
        elements.filter((one) => !elements.some((other) => one !== other && one.contains(other)));

    return steps.reduce(
        (scopes, { selector, text, named, nth }) => {
            let found = inside(scopes, selector || ':not(script):not(style)');
            // A text may also be that of the element in which it is looked for.
            if (!selector) found = [...scopes, ...found].filter((element) => element !== document);
            if (text) found = found.filter((element) => hasText(element, text));
            if (named !== undefined) found = found.filter((element) => nameOf(element) === named);
            if (!selector) found = innermost(found).filter(isVisible);
            return nth === undefined ? found : found.slice(nth).slice(0, 1);
        },
        [document],
    );
}

/** Where to click on an element; null while it moves, is disabled or is covered by another one. */
export async function restingPlaceOf(find) {
    const look = () => {
        const found = find();
        if (!found || found.disabled || found.getAttribute('aria-disabled') === 'true') return null;
        // The inputs of choices are hidden.
        const element = found.matches('[type="radio"], [type="checkbox"]')
            ? found.closest('label') || found
            : found;
        element.scrollIntoView({ block: 'center' });
        const box = element.getBoundingClientRect();
        const place = { x: box.x + box.width / 2, y: box.y + box.height / 2 };
        const top = document.elementFromPoint(place.x, place.y);
        return top && (element.contains(top) || top.contains(element)) ? place : null;
    };
    const nextFrame = () => new Promise((resolve) => requestAnimationFrame(resolve));
    const before = look();
    if (!before) return null;
    await nextFrame();
    await nextFrame();
    const place = look();
    return place && place.x === before.x && place.y === before.y ? place : null;
}

/** Puts the focus into a field and selects its text; whether that was possible. */
export function selectField(field) {
    if (!field || field.disabled) return false;
    field.focus();
    field.select();
    return document.activeElement === field;
}
