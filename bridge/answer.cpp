#include "bridge/answer.h"

#include "host/jsonhelper.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewjsapihandler.h"
#include "host/kxwebviewjscontext.h"

namespace OfficeAssiant {

QString resultSuccess()
{
    return QStringLiteral("success");
}

QString resultError()
{
    return QStringLiteral("error");
}

QString textArgument(const KxWebViewJSContext &context, const QString &name)
{
    return KxWebViewJSApiHandler::parseContextArgs(context, true).value(name).toString();
}

bool boolArgument(const KxWebViewJSContext &context, const QString &name)
{
    return KxWebViewJSApiHandler::parseContextArgs(context, true).value(name).toBool();
}

void setResult(KxWebViewJSContext &context, const QJsonValue &result)
{
    context.result()["result"] = JsonHelper::convertQJsonToJsonCpp(result);
}

void setIncomplete(KxWebViewJSContext &context)
{
    context.setProperty("isResultIncomplete", true);
}

void setBase64Result(KxWebViewJSContext &context, const QString &text)
{
    setResult(context, toBase64(text));
}

QString toBase64(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toBase64());
}

void publishAnswer(KxWebViewAsynJSObject &bridge, const QString &callback, const QJsonValue &result)
{
    KxWebViewJSContext context;
    context.parse(QStringLiteral("callback"), callback, {});
    context.setIsResultBase64(false);
    setResult(context, result);
    bridge.publishResult(context);
}

void publishFindings(KxWebViewAsynJSObject &bridge, const QString &callback,
                     const QJsonValue &findings)
{
    KxWebViewJSContext context;
    // Empty, but not null.
    context.parse(QStringLiteral(""), callback, {});
    context.setIsResultBase64(false);
    // Shells may keep the property apart from the switch.
    context.setProperty("isResultBase64", false);
    setResult(context, findings);
    bridge.publishResult(context);
}

} // namespace OfficeAssiant
