#include "helio/webengine/pagewire.h"

#include "helio/doctor/doctoroperations.h"
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

void PageWire::setDoctor(DoctorOperations *doctor)
{
    m_doctor = doctor;
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
    if (isTakenByDoctor(call, base64))
        return;
    // Queued: a command may show a dialog, and Chromium would be blocked until it returns.
    if (m_api)
        m_api->queueJSAsynCall(call, base64);
}

bool PageWire::isTakenByDoctor(const QString &call, bool base64)
{
    if (!m_doctor)
        return false;
    const QString text = base64 ? QString::fromUtf8(QByteArray::fromBase64(call.toLatin1())) : call;
    return m_doctor->take(text, this, [this](const QString &callback, const QString &json) {
        deliver(callback, json, false);
    });
}

} // namespace helio
