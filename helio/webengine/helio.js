// Gives the page access to the shell as window.helio. Runs after qwebchannel.js and before the
// page's own scripts. The shell replaces HELIO_SETTINGS by its settings.
(function (settings) {
    'use strict';

    function isPageOfTheShell() {
        if (window.top !== window || location.protocol !== 'file:') {
            return false;
        }
        try {
            return decodeURIComponent(location.pathname).startsWith(settings.pageDirectory);
        } catch {
            return false;
        }
    }

    if (!isPageOfTheShell()) {
        return;
    }

    // Unique, because answers to an earlier document's calls may still arrive.
    const answerPrefix = `helioAnswer${Date.now().toString(36)}_`;
    const openCalls = new Map();
    let wire = null;
    let callCount = 0;

    const wireIsThere = new Promise((resolve) => {
        new QWebChannel(qt.webChannelTransport, (channel) => {
            wire = channel.objects.wire;
            wire.callbackToJS.connect(receive);
            resolve();
        });
    });

    // `listen` receives what comes before the answer of an operation that says it piece by piece.
    function call(command, args, listen) {
        if (!wire) return callLater(command, args, listen);
        return new Promise((resolve, reject) => {
            callCount += 1;
            const callback = answerPrefix + callCount;
            // Writing a property needs no acknowledgement, unlike a method call. The answer comes
            // as a callback.
            wire.jsAsynCall = { command, callback, args };
            openCalls.set(callback, { resolve, reject, listen });
        });
    }

    // With the arguments of now: they may change before there is a wire.
    async function callLater(command, args, listen) {
        const copy = JSON.stringify({ args });
        await wireIsThere;
        return call(command, JSON.parse(copy).args, listen);
    }

    function settle({ resolve, reject }, envelope) {
        if (Object.prototype.hasOwnProperty.call(envelope, 'error')) {
            reject(new Error(envelope.error));
        } else {
            resolve(envelope);
        }
    }

    function receive(callback, json) {
        const envelope = JSON.parse(json);
        const openCall = openCalls.get(callback);
        if (openCall && Object.prototype.hasOwnProperty.call(envelope, 'line')) {
            openCall.listen?.(envelope.line);
        } else if (openCall) {
            openCalls.delete(callback);
            settle(openCall, envelope);
        } else if (callback === settings.windowCallback) {
            window.dispatchEvent(new CustomEvent('heliowindow', { detail: envelope.result }));
        } else if (
            Object.prototype.hasOwnProperty.call(window, callback) &&
            typeof window[callback] === 'function'
        ) {
            window[callback](envelope);
        }
    }

    Object.defineProperty(window, 'helio', {
        value: Object.freeze({
            call,
            theme: settings.theme,
            language: settings.language,
            operations: Object.freeze(settings.operations),
        }),
        enumerable: true,
    });
})(HELIO_SETTINGS);
