'use strict';

// window.helio must be there before the first script of the page.
window.helioAtStart = Object.keys(window.helio || {});
window.early = helio.call('getcollectionpage');
window.tips = [];

function hiddentipCallBack(envelope) {
    window.tips.push(envelope.result);
    document.getElementById('tip').textContent = envelope.result;
}

async function press() {
    await helio.call('mousePress');
    window.isPressed = true;
}

async function exportReport() {
    const { result } = await helio.call('exportsysinfo');
    document.getElementById('outcome').textContent = result;
}
