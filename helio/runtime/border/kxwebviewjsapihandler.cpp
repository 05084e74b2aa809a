#include "host/kxwebviewjsapihandler.h"

#include "host/kxwebviewjscontext.h"

KxWebViewJSApiHandler::~KxWebViewJSApiHandler() = default;

QMap<QString, QVariant> KxWebViewJSApiHandler::parseContextArgs(const KxWebViewJSContext &context,
                                                                bool byName)
{
    const QMap<QString, QVariant> named = context.arguments();
    if (byName)
        return named;
    QMap<QString, QVariant> placed;
    for (const QVariant &value : named)
        placed.insert(QString::number(placed.size()), value);
    return placed;
}
