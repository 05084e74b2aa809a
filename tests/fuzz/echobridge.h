#pragma once

#include <QJsonObject>

#include "bridge/answer.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewjscontext.h"

/// A script object with a few commands that answer what they were sent.
class EchoBridge : public KxWebViewAsynJSObject
{
    Q_OBJECT

public:
    explicit EchoBridge(KxWebViewJsApiRunner *runner) : KxWebViewAsynJSObject(nullptr, runner) {}

public slots:
    void echo(KxWebViewJSContext &context)
    {
        OfficeAssiant::setResult(context, OfficeAssiant::textArgument(context, textName));
    }
    void echoAll(KxWebViewJSContext &context)
    {
        OfficeAssiant::setResult(context, QJsonObject::fromVariantMap(context.arguments()));
    }
    void echoBase64(KxWebViewJSContext &context)
    {
        context.setIsResultBase64(true);
        OfficeAssiant::setBase64Result(context, OfficeAssiant::textArgument(context, textName));
    }
    void silent(KxWebViewJSContext &context) { OfficeAssiant::boolArgument(context, textName); }

private:
    const QString textName = QStringLiteral("text");
};
