#include "helio/webengine/wire/pagewire.h"

#include <QJsonDocument>

#include "helio/doctor/doctoroperations.h"
#include "helio/tasks/taskoperations.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewjscontext.h"

namespace {

constexpr QLatin1String commandKey("command");
constexpr QLatin1String callbackKey("callback");
constexpr QLatin1String argumentsKey("args");

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

QString textOfBase64(const QString &base64)
{
    return QString::fromUtf8(QByteArray::fromBase64(base64.toLatin1()));
}

QString textOf(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

/// Runs a command, and has the script object refuse what is none.
void run(const QJsonObject &call, KxWebViewAsynJSObject &api)
{
    const QJsonValue command = call.value(commandKey);
    const QJsonValue callback = call.value(callbackKey);
    const QJsonValue arguments = call.value(argumentsKey);
    const bool isComplete = command.isString() && (callback.isUndefined() || callback.isString()) &&
                            (arguments.isUndefined() || arguments.isObject());
    if (!isComplete) {
        api.fromJSAsynCall(textOf(call));
        return;
    }
    KxWebViewJSContext context;
    context.parse(command.toString(), callback.toString(), arguments.toObject().toVariantMap());
    api.handleMethod(command.toString(), context, true);
}

} // namespace

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
        emit callbackToJS(callback, base64 ? textOfBase64(json) : json);
}

void PageWire::forgetPage()
{
    m_hasPage = false;
}

void PageWire::fromJSAsynCall(const QString &call)
{
    if (isHeard() && !isTaken(objectOf(call.toUtf8())))
        addText(call, false);
}

void PageWire::fromJSAsynCallBase64(const QString &call)
{
    if (isHeard() && !isTaken(objectOf(QByteArray::fromBase64(call.toLatin1()))))
        addText(call, true);
}

void PageWire::takeCall(const QJsonObject &call)
{
    if (isHeard() && !isTaken(call))
        addCall(call);
}

// Both later: a command may show a dialog, and Chromium would be blocked until it returns.
void PageWire::addCall(const QJsonObject &call)
{
    m_calls.add([api = m_api, call] {
        if (api)
            run(call, *api);
    });
}

void PageWire::addText(const QString &call, bool base64)
{
    m_calls.add([api = m_api, call, base64] {
        if (!api)
            return;
        if (base64)
            api->fromJSAsynCallBase64(call);
        else
            api->fromJSAsynCall(call);
    });
}

bool PageWire::isHeard()
{
    m_hasPage = true;
    const bool isTrusted = m_isTrusted();
    if (!isTrusted)
        qWarning("a call from a document outside the page directory was refused");
    return isTrusted;
}

bool PageWire::isTaken(const QJsonObject &call)
{
    // The plug-in's commands are identifiers; what else can be called has a dot in its name.
    return call.value(commandKey).toString().contains(QLatin1Char('.')) &&
           (isTakenByHelpers(call) || isTakenByShell(call));
}

bool PageWire::isTakenByHelpers(const QJsonObject &call)
{
    const auto toPage = [this](const QString &callback, const QString &json) {
        deliver(callback, json, false);
    };
    return (m_doctor && m_doctor->take(call, this, toPage)) ||
           (m_tasks && m_tasks->take(call, this, toPage));
}

bool PageWire::isTakenByShell(const QJsonObject &call)
{
    const auto operation = m_operations.constFind(call.value(commandKey).toString());
    if (operation == m_operations.constEnd())
        return false;
    const QJsonObject answer = (*operation)(call.value(argumentsKey).toObject());
    deliver(call.value(callbackKey).toString(), textOf({{QStringLiteral("result"), answer}}),
            false);
    return true;
}

} // namespace helio
