#pragma once

#include <QJsonObject>

#include <stdexcept>

#include "bridge/answer.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewcontainer.h"
#include "host/kxwebviewjsapihandler.h"
#include "host/kxwebviewjscontext.h"

/// A script object with the test's own commands.
class ProbeObject : public KxWebViewAsynJSObject
{
    Q_OBJECT

public:
    explicit ProbeObject(KxWebViewContainer *container)
        : KxWebViewAsynJSObject(container, container)
    {
    }

    int runs = 0;
    QMap<QString, QVariant> arguments;

public slots:
    void echo(KxWebViewJSContext &context)
    {
        ++runs;
        arguments = KxWebViewJSApiHandler::parseContextArgs(context, true);
        OfficeAssiant::setResult(context,
                                 OfficeAssiant::textArgument(context, QStringLiteral("value")));
    }
    void silent(KxWebViewJSContext &) { ++runs; }
    void throwsError(KxWebViewJSContext &) { throw std::runtime_error("out of luck"); }
    void throwsNumber(KxWebViewJSContext &) { throw 42; }
    void destroysItself(KxWebViewJSContext &) { delete this; }
    void withoutContext() { ++runs; }
    void byPointer(KxWebViewJSContext *) { ++runs; }
    void withMore(KxWebViewJSContext &, int) { ++runs; }

protected slots:
    void protectedSlot(KxWebViewJSContext &) { ++runs; }

private slots:
    void privateSlot(KxWebViewJSContext &) { ++runs; }

signals:
    void contextSignal(KxWebViewJSContext &context);
};
