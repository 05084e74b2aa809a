/** Library functions that kept packages call and the embedded Chromium 87 lacks. */

function relativeItem<Item>(this: ArrayLike<Item>, index: number): Item | undefined {
    const whole = Math.trunc(index) || 0;
    return this[whole < 0 ? this.length + whole : whole];
}

for (const prototype of [Array.prototype, String.prototype]) {
    if (!('at' in prototype)) {
        Object.defineProperty(prototype, 'at', {
            value: relativeItem,
            writable: true,
            configurable: true,
        });
    }
}
