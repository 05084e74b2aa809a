#include "helio/webengine/pagewire.h"

#include <QJsonDocument>

#include <algorithm>

#include "helio/doctor/doctoroperations.h"
#include "helio/tasks/taskoperations.h"
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

void PageWire::setTasks(TaskOperations *tasks)
{
    m_tasks = tasks;
}

void PageWire::setOperations(const PageOperations &operations)
{
    m_operations = operations;
}

void PageWire::deliver(const QString &callback, const QString &json, bool base64)
{
    if (m_hasPage && m_isTrusted())
        emit callbackToJS(callback, json, base64);
}

void PageWire::forgetPage()
{
    m_hasPage = false;
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
    m_hasPage = true;
    if (!m_isTrusted()) {
        qWarning("a call from a document outside the page directory was refused");
        return;
    }
    const QString text = base64 ? QString::fromUtf8(QByteArray::fromBase64(call.toLatin1())) : call;
    if (isTakenByHelpers(text) || isTakenByShell(text))
        return;
    // Queued: a command may show a dialog, and Chromium would be blocked until it returns.
    if (m_api)
        m_api->queueJSAsynCall(call, base64);
}

bool PageWire::isTakenByHelpers(const QString &call)
{
    const auto toPage = [this](const QString &callback, const QString &json) {
        deliver(callback, json, false);
    };
    return (m_doctor && m_doctor->take(call, this, toPage)) ||
           (m_tasks && m_tasks->take(call, this, toPage));
}

bool PageWire::isTakenByShell(const QString &call)
{
    // Most calls are the plug-in's, and need not be parsed twice.
    const auto isNamed = [&call](const QString &name) { return call.contains(name); };
    if (std::none_of(m_operations.keyBegin(), m_operations.keyEnd(), isNamed))
        return false;
    const QJsonObject parsed = QJsonDocument::fromJson(call.toUtf8()).object();
    const auto operation = m_operations.value(parsed.value(QStringLiteral("command")).toString());
    if (!operation)
        return false;
    const QJsonObject answer = operation(parsed.value(QStringLiteral("args")).toObject());
    const QJsonDocument envelope(QJsonObject{{QStringLiteral("result"), answer}});
    deliver(parsed.value(QStringLiteral("callback")).toString(),
            QString::fromUtf8(envelope.toJson(QJsonDocument::Compact)), false);
    return true;
}

} // namespace helio
