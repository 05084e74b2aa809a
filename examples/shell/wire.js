// Runs in main frames after qwebchannel.js and before the page's own scripts. The browser replaces
// HELIO_SETTINGS by an object with theme and language.
(function (settings) {
    'use strict';

    // Unique: answers to calls of an earlier document may still arrive.
    const prefix = `answer${Date.now().toString(36)}_`;
    const openCalls = new Map();
    const waiting = [];
    let wire = null;
    let count = 0;

    function call(command, args) {
        return new Promise((resolve, reject) => {
            count += 1;
            const callback = prefix + count;
            const text = JSON.stringify({ command, callback, args });
            openCalls.set(callback, { resolve, reject });
            if (wire) wire.call(text);
            else waiting.push(text);
        });
    }

    function receive(callback, json, base64) {
        const bytes = (text) => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));
        const answer = JSON.parse(base64 ? new TextDecoder().decode(bytes(json)) : json);
        const open = openCalls.get(callback);
        openCalls.delete(callback);
        if (open && 'error' in answer) open.reject(new Error(answer.error));
        else if (open) open.resolve(answer);
        else if (typeof window[callback] === 'function') window[callback](answer);
    }

    const helio = Object.freeze({ call, ...settings });
    Object.defineProperty(window, 'helio', { value: helio, enumerable: true });
    new QWebChannel(qt.webChannelTransport, (channel) => {
        wire = channel.objects.wire;
        wire.answered.connect(receive);
        waiting.splice(0).forEach((text) => wire.call(text));
    });
})(HELIO_SETTINGS);
