#include "helio/webengine/pagewire.h"

#include "host/kxwebviewasynjsobject.h"

namespace helio {

PageWire::PageWire(std::function<bool()> isTrusted, QObject *parent)
    : QObject(parent), m_isTrusted(std::move(isTrusted))
{
}

void PageWire::setApi(KxWebViewAsynJSObject *api)
{
    m_api = api;
}

void PageWire::deliver(const QString &callback, const QString &json, bool base64)
{
    if (m_isTrusted())
        emit callbackToJS(callback, json, base64);
}

void PageWire::fromJSAsynCall(const QString &call)
{
    pass(call, false);
}

void PageWire::fromJSAsynCallBase64(const QString &call)
{
    pass(call, true);
}

void PageWire::pass(const QString &call, bool base64)
{
    if (!m_isTrusted()) {
        qWarning("a call from a document outside the page directory was refused");
        return;
    }
    // Queued: a command may show a dialog, and Chromium would be blocked until it returns.
    if (m_api)
        m_api->queueJSAsynCall(call, base64);
}

} // namespace helio
