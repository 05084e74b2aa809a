const keyCodes = { ArrowDown: 40, ArrowUp: 38, End: 35, Enter: 13, Escape: 27, F5: 116, Tab: 9 };
const modifierBits = { Control: 2 };

/** The keyboard of a page. */
export class Keyboard {
    #input;

    constructor(input) {
        this.#input = input;
    }

    /** Presses and releases a key: “Escape”, “Control+f”. */
    async press(keys) {
        const modifierNames = keys.split('+');
        const key = modifierNames.pop();
        const letter = /^[a-z]$/.test(key);
        if (!letter && !(key in keyCodes)) throw new Error(`unknown key: ${key}`);
        const event = {
            key,
            code: letter ? `Key${key.toUpperCase()}` : key,
            windowsVirtualKeyCode: letter ? key.toUpperCase().charCodeAt(0) : keyCodes[key],
            modifiers: modifierNames.reduce((sum, name) => sum + modifierBits[name], 0),
        };
        const text = key === 'Enter' ? '\r' : undefined;
        await this.#input.dispatchKeyEvent({
            type: text ? 'keyDown' : 'rawKeyDown',
            text,
            ...event,
        });
        await this.#input.dispatchKeyEvent({ type: 'keyUp', ...event });
    }

    /** Enters a text where the focus is. */
    async type(text) {
        await this.#input.insertText({ text });
    }
}
