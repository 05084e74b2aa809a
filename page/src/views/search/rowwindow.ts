/** No browser lays out an element taller than this many pixels. */
const tallest = 30_000_000;

interface RowWindow {
    /** The first row to draw, and the one after the last. */
    start: number;
    end: number;
    /** The height of all rows that there is room for. */
    height: number;
}

/** How many rows of a height can be scrolled through. */
export function mostRows(rowHeight: number): number {
    return Math.floor(tallest / rowHeight);
}

/**
 * The rows in sight and a few around them. All rows have one height, so that a place is simple
 * arithmetic, however many there are and however fast more arrive.
 */
export function rowWindow(
    count: number,
    rowHeight: number,
    scrollTop: number,
    viewHeight: number,
    around = 10,
): RowWindow {
    const rows = Math.min(count, mostRows(rowHeight));
    const first = Math.floor(scrollTop / rowHeight) - around;
    const last = Math.ceil((scrollTop + viewHeight) / rowHeight) + around;
    return {
        start: Math.max(0, Math.min(first, rows)),
        end: Math.max(0, Math.min(last, rows)),
        height: rows * rowHeight,
    };
}

/** Where to scroll so that a row is in sight, with as little movement as possible. */
export function scrollFor(
    row: number,
    rowHeight: number,
    scrollTop: number,
    viewHeight: number,
): number {
    const top = row * rowHeight;
    if (top < scrollTop) return top;
    return Math.max(scrollTop, top + rowHeight - viewHeight);
}
