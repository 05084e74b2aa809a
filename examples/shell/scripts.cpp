// The bridge between a page's calls and the plug-in's commands.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QPointer>
#include <QThread>

#include <json/reader.h>
#include <json/writer.h>

#include "host/jsonhelper.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewcontainer.h"
#include "host/kxwebviewjsapihandler.h"
#include "host/kxwebviewjscontext.h"

namespace {

QString textOf(const Json::Value &value)
{
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    builder["emitUTF8"] = true;
    return QString::fromStdString(Json::writeString(builder, value));
}

QString refusal(const QString &reason)
{
    const QJsonObject answer{{QStringLiteral("error"), reason}};
    return QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

} // namespace

Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonValue &value)
{
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    Json::Value list;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    reader->parse(text.begin(), text.end(), &list, nullptr);
    return list[0];
}
Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonObject &object)
{
    return convertQJsonToJsonCpp(QJsonValue(object));
}
Json::Value JsonHelper::convertQJsonToJsonCpp(const QJsonArray &array)
{
    return convertQJsonToJsonCpp(QJsonValue(array));
}
QJsonValue JsonHelper::convertJsonCppToQJson(const Json::Value &value)
{
    const QByteArray text = QByteArray("[") + textOf(value).toUtf8() + ']';
    return QJsonDocument::fromJson(text).array().at(0);
}

KxWebViewJsApiRunner::~KxWebViewJsApiRunner() = default;
KxWebViewContainer::KxWebViewContainer(QObject *parent) : QObject(parent) {}
KxWebViewContainer::~KxWebViewContainer() = default;

KxWebViewJSApiHandler::~KxWebViewJSApiHandler() = default;
QMap<QString, QVariant> KxWebViewJSApiHandler::parseContextArgs(const KxWebViewJSContext &context,
                                                                bool byName)
{
    QMap<QString, QVariant> places;
    for (const QVariant &value : context.arguments())
        places.insert(QString::number(places.size()), value);
    return byName ? context.arguments() : places;
}

KxWebViewJSContext::KxWebViewJSContext() = default;
KxWebViewJSContext::~KxWebViewJSContext() = default;
void KxWebViewJSContext::parse(const QString &name, const QString &callback,
                               const QMap<QString, QVariant> &args)
{
    m_name = name;
    m_callback = callback;
    m_arguments = args;
}
QString KxWebViewJSContext::name() const
{
    return m_name;
}
QString KxWebViewJSContext::callback() const
{
    return m_callback;
}
QMap<QString, QVariant> KxWebViewJSContext::arguments() const
{
    return m_arguments;
}
Json::Value &KxWebViewJSContext::result()
{
    return m_result;
}
const Json::Value &KxWebViewJSContext::result() const
{
    return m_result;
}
void KxWebViewJSContext::setIsResultBase64(bool base64)
{
    setProperty("isResultBase64", base64);
}
bool KxWebViewJSContext::isResultBase64() const
{
    return property("isResultBase64").toBool();
}
void KxWebViewJSContext::setProperty(const char *name, const QVariant &value)
{
    m_properties[name] = value;
}
QVariant KxWebViewJSContext::property(const char *name) const
{
    return m_properties.value(name);
}

KxWebViewAsynJSObject::KxWebViewAsynJSObject(QObject *parent, KxWebViewJsApiRunner *runner)
    : QObject(parent), m_runner(runner)
{
}
KxWebViewAsynJSObject::~KxWebViewAsynJSObject() = default;
void KxWebViewAsynJSObject::initHandlers()
{
    m_handlersValid = true;
}
bool KxWebViewAsynJSObject::isHandlersValid()
{
    return m_handlersValid;
}
void KxWebViewAsynJSObject::setHandler(const QString &command, KxWebViewJSApiHandler *handler)
{
    m_handlers.insert(command, handler);
}
KxWebViewJSApiHandler *KxWebViewAsynJSObject::findHandler(const QString &command)
{
    return m_handlers.value(command);
}
void KxWebViewAsynJSObject::setWebViewContainer(KxWebViewJsApiRunner *runner)
{
    m_runner = runner;
}

bool KxWebViewAsynJSObject::doCallFunction(const QString &command, KxWebViewJSContext &context,
                                           KxWebViewJSApiHandler *handler)
{
    if (handler) {
        handler->call(context);
        return true;
    }
    const QByteArray signature = command.toUtf8() + "(KxWebViewJSContext&)";
    const QMetaMethod slot = metaObject()->method(metaObject()->indexOfSlot(signature.constData()));
    return slot.access() == QMetaMethod::Public &&
           slot.invoke(this, Qt::DirectConnection,
                       QGenericArgument("KxWebViewJSContext&", &context));
}

bool KxWebViewAsynJSObject::handleMethod(const QString &command, KxWebViewJSContext &context,
                                         bool publish)
{
    if (!isHandlersValid())
        initHandlers();
    // A command may run an event loop in which its page is deleted.
    const QPointer<KxWebViewAsynJSObject> alive(this);
    const bool known = doCallFunction(command, context, findHandler(command));
    if (alive && publish && known)
        publishResult(context);
    else if (alive && publish)
        callbackToJS(context.callback(), refusal(QStringLiteral("unknown command: ") + command),
                     false);
    return known;
}

void KxWebViewAsynJSObject::fromJSAsynCall(const QString &call)
{
    const QJsonObject object = QJsonDocument::fromJson(call.toUtf8()).object();
    const QString command = object.value(QStringLiteral("command")).toString();
    KxWebViewJSContext context;
    context.parse(command, object.value(QStringLiteral("callback")).toString(),
                  object.value(QStringLiteral("args")).toObject().toVariantMap());
    handleMethod(command, context, true);
}
void KxWebViewAsynJSObject::fromJSAsynCallBase64(const QString &call)
{
    fromJSAsynCall(QString::fromUtf8(QByteArray::fromBase64(call.toLatin1())));
}
void KxWebViewAsynJSObject::queueJSAsynCall(const QString &call, bool base64)
{
    QMetaObject::invokeMethod(
        this, [=] { base64 ? fromJSAsynCallBase64(call) : fromJSAsynCall(call); },
        Qt::QueuedConnection);
}

void KxWebViewAsynJSObject::callbackToJS(const QString &callback, const QString &json, bool base64)
{
    if (QThread::currentThread() != thread())
        QMetaObject::invokeMethod(
            this, [=] { callbackToJS(callback, json, base64); }, Qt::QueuedConnection);
    else if (m_runner && !callback.isEmpty())
        m_runner->runCallback(callback, json, base64);
}

void KxWebViewAsynJSObject::publishResult(const KxWebViewJSContext &context)
{
    Json::Value answer =
        context.result().isNull() ? Json::Value(Json::objectValue) : context.result();
    if (context.property("isResultIncomplete").toBool())
        answer["incomplete"] = true;
    const QString json = textOf(answer);
    const bool base64 = context.isResultBase64();
    callbackToJS(context.callback(), base64 ? QString::fromLatin1(json.toUtf8().toBase64()) : json,
                 base64);
}
