// Gives the page its host, window.helio. Runs before the page's own scripts, after qwebchannel.js.
// The host puts its settings in the place of HELIO_SETTINGS.
(function (settings) {
    'use strict';

    function isPageOfTheHost() {
        if (window.top !== window || location.protocol !== 'file:')
            return false;
        try {
            return decodeURIComponent(location.pathname).startsWith(settings.pageDirectory);
        } catch (error) {
            return false;
        }
    }

    if (!isPageOfTheHost())
        return;

    // Answers to the calls of an earlier document must not be taken for answers to ours.
    const answerPrefix = `helioAnswer${Date.now().toString(36)}_`;
    const openCalls = new Map();
    const waitingCalls = [];
    let wire = null;
    let callCount = 0;

    // Writing the call down spares the acknowledgement of a method, which says nothing: the answer
    // comes as a callback.
    function send(text) {
        wire.jsAsynCall = text;
    }

    function call(command, args) {
        return new Promise((resolve, reject) => {
            callCount += 1;
            const callback = answerPrefix + callCount;
            const text = JSON.stringify({ command, callback, args });
            openCalls.set(callback, { resolve, reject });
            if (wire)
                send(text);
            else
                waitingCalls.push(text);
        });
    }

    function settle({ resolve, reject }, envelope) {
        if (Object.prototype.hasOwnProperty.call(envelope, 'error'))
            reject(new Error(envelope.error));
        else
            resolve(envelope);
    }

    function textOfBase64(base64) {
        const bytes = Uint8Array.from(atob(base64), (character) => character.charCodeAt(0));
        return new TextDecoder().decode(bytes);
    }

    // A page that knows what its view has to stop cancels the event and closes by itself.
    function closeByUser() {
        if (window.dispatchEvent(new Event('helioclose', { cancelable: true })))
            call('closechildwindow');
    }

    function receive(callback, json, isBase64) {
        const envelope = JSON.parse(isBase64 ? textOfBase64(json) : json);
        const openCall = openCalls.get(callback);
        if (openCall) {
            openCalls.delete(callback);
            settle(openCall, envelope);
        } else if (callback === settings.closeCallback) {
            closeByUser();
        } else if (Object.prototype.hasOwnProperty.call(window, callback)
            && typeof window[callback] === 'function') {
            window[callback](envelope);
        }
    }

    Object.defineProperty(window, 'helio', {
        value: Object.freeze({ call, theme: settings.theme, language: settings.language }),
        enumerable: true,
    });

    new QWebChannel(qt.webChannelTransport, (channel) => {
        wire = channel.objects.wire;
        wire.callbackToJS.connect(receive);
        waitingCalls.splice(0).forEach(send);
    });
})(HELIO_SETTINGS);
