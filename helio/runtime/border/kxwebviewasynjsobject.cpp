#include "host/kxwebviewasynjsobject.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QPointer>
#include <QThread>

#include <json/writer.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <sstream>

#include "host/kxwebviewcontainer.h"
#include "host/kxwebviewjsapihandler.h"
#include "host/kxwebviewjscontext.h"

namespace {

/// A command sets it when its result claims more than was done; the page gets it beside the result.
constexpr char incompleteProperty[] = "isResultIncomplete";
constexpr char incompleteKey[] = "incomplete";

QString unreadableCallCallback()
{
    return QStringLiteral("helioErrorCallBack");
}

/// Longer than nearly all answers.
constexpr std::size_t largestKeptText = 64 * 1024;

/// Writes answers on one line. Kept: making a writer and a stream takes longer than writing an
/// answer, and a search writes many.
class AnswerWriter
{
public:
    AnswerWriter()
    {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        builder["emitUTF8"] = true;
        m_writer.reset(builder.newStreamWriter());
    }

    QString write(const Json::Value &value)
    {
        m_stream.clear();
        m_stream.str({});
        m_writer->write(value, &m_stream);
        const std::string text = m_stream.str();
        if (text.size() > largestKeptText)
            m_stream = std::ostringstream();
        return QString::fromStdString(text);
    }

private:
    std::unique_ptr<Json::StreamWriter> m_writer;
    std::ostringstream m_stream;
};

QString toJsonText(const Json::Value &value)
{
    thread_local AnswerWriter writer;
    return writer.write(value);
}

QString answerText(const KxWebViewJSContext &context)
{
    if (context.property(incompleteProperty).toBool()) {
        Json::Value answer = context.result();
        answer[incompleteKey] = true;
        return toJsonText(answer);
    }
    return context.result().isNull() ? QStringLiteral("{}") : toJsonText(context.result());
}

QString refusal(const QString &message)
{
    const QJsonObject answer{{QStringLiteral("error"), message}};
    return QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

bool isIdentifier(const QString &name)
{
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](QChar c) {
        return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == QLatin1Char('_'));
    });
}

bool isSlotForContext(const QMetaMethod &method)
{
    return method.methodType() == QMetaMethod::Slot && method.parameterCount() == 1 &&
           method.parameterTypes().first() == "KxWebViewJSContext&";
}

/// The slot of a command; an invalid method for anything else that the class has.
QMetaMethod commandSlot(const QMetaObject *metaObject, const QString &command)
{
    if (!isIdentifier(command))
        return {};
    // By name: QMetaObject's own search takes the types of the signature apart first.
    const QByteArray name = command.toLatin1();
    for (int index = metaObject->methodCount() - 1; index >= 0; --index) {
        const QMetaMethod method = metaObject->method(index);
        if (method.name() == name && isSlotForContext(method))
            return method.access() == QMetaMethod::Public ? method : QMetaMethod();
    }
    return {};
}

/// Why a call cannot be made; empty if it can.
QString faultOf(const QJsonObject &call)
{
    if (!call.value(QLatin1String("command")).isString())
        return QStringLiteral("a call needs the text \"command\"");
    const QJsonValue callback = call.value(QLatin1String("callback"));
    if (!callback.isUndefined() && !callback.isString())
        return QStringLiteral("\"callback\" is not a text");
    const QJsonValue args = call.value(QLatin1String("args"));
    if (!args.isUndefined() && !args.isObject())
        return QStringLiteral("\"args\" is not an object");
    return {};
}

} // namespace

KxWebViewAsynJSObject::KxWebViewAsynJSObject(QObject *parent, KxWebViewJsApiRunner *runner)
    : QObject(parent), m_runner(runner)
{
}

KxWebViewAsynJSObject::~KxWebViewAsynJSObject() = default;

void KxWebViewAsynJSObject::initHandlers()
{
    m_handlersValid = true;
}

void KxWebViewAsynJSObject::setHandler(const QString &command, KxWebViewJSApiHandler *handler)
{
    if (handler)
        m_handlers.insert(command, handler);
    else
        m_handlers.remove(command);
}

KxWebViewJSApiHandler *KxWebViewAsynJSObject::findHandler(const QString &command)
{
    return m_handlers.value(command);
}

bool KxWebViewAsynJSObject::isHandlersValid()
{
    return m_handlersValid;
}

bool KxWebViewAsynJSObject::doCallFunction(const QString &command, KxWebViewJSContext &context,
                                           KxWebViewJSApiHandler *handler)
{
    if (handler) {
        handler->call(context);
        return true;
    }
    const QMetaMethod slot = commandSlot(metaObject(), command);
    if (!slot.isValid())
        return false;
    return slot.invoke(this, Qt::DirectConnection,
                       QGenericArgument("KxWebViewJSContext&", &context));
}

bool KxWebViewAsynJSObject::handleMethod(const QString &command, KxWebViewJSContext &context,
                                         bool publish)
{
    if (!isHandlersValid())
        initHandlers();
    // A command may run a nested event loop, in which its page may be closed.
    const QPointer<KxWebViewAsynJSObject> alive(this);
    QString fault;
    bool known = true;
    try {
        known = doCallFunction(command, context, findHandler(command));
        if (!known)
            fault = QStringLiteral("unknown command: ") + command;
    } catch (const std::exception &error) {
        fault = QStringLiteral("%1 failed: %2").arg(command, QString::fromUtf8(error.what()));
    } catch (...) {
        fault = QStringLiteral("%1 failed").arg(command);
    }
    if (!alive || !publish)
        return known;
    if (fault.isEmpty())
        publishResult(context);
    else
        callbackToJS(context.callback(), refusal(fault), false);
    return known;
}

void KxWebViewAsynJSObject::setWebViewContainer(KxWebViewJsApiRunner *runner)
{
    m_runner = runner;
}

void KxWebViewAsynJSObject::fromJSAsynCall(const QString &call)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(call.toUtf8(), &parseError);
    if (!document.isObject()) {
        const QString reason =
            parseError.error == QJsonParseError::NoError
                ? QStringLiteral("a call is not a JSON object")
                : QStringLiteral("a call is not JSON: ") + parseError.errorString();
        callbackToJS(unreadableCallCallback(), refusal(reason), false);
        return;
    }
    const QJsonObject object = document.object();
    const QString callback = object.value(QLatin1String("callback")).toString();
    const QString fault = faultOf(object);
    if (!fault.isEmpty()) {
        callbackToJS(callback.isEmpty() ? unreadableCallCallback() : callback, refusal(fault),
                     false);
        return;
    }
    const QString command = object.value(QLatin1String("command")).toString();
    KxWebViewJSContext context;
    context.parse(command, callback, object.value(QLatin1String("args")).toObject().toVariantMap());
    handleMethod(command, context, true);
}

void KxWebViewAsynJSObject::fromJSAsynCallBase64(const QString &call)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(call.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (decoded)
        fromJSAsynCall(QString::fromUtf8(*decoded));
    else
        callbackToJS(unreadableCallCallback(), refusal(QStringLiteral("a call is not base64")),
                     false);
}

void KxWebViewAsynJSObject::callbackToJS(const QString &callback, const QString &json, bool base64)
{
    if (callback.isEmpty())
        return;
    if (QThread::currentThread() == thread()) {
        if (m_runner)
            m_runner->runCallback(callback, json, base64);
        return;
    }
    QMetaObject::invokeMethod(
        this, [=] { callbackToJS(callback, json, base64); }, Qt::QueuedConnection);
}

void KxWebViewAsynJSObject::queueJSAsynCall(const QString &call, bool base64)
{
    QMetaObject::invokeMethod(
        this, [=] { base64 ? fromJSAsynCallBase64(call) : fromJSAsynCall(call); },
        Qt::QueuedConnection);
}

void KxWebViewAsynJSObject::publishResult(const KxWebViewJSContext &context)
{
    const QString json = answerText(context);
    const bool base64 = context.isResultBase64();
    callbackToJS(context.callback(), base64 ? QString::fromLatin1(json.toUtf8().toBase64()) : json,
                 base64);
}
