#pragma once

#include <QMap>
#include <QString>
#include <QVariant>

#include "host/khelioexport.h"

class KxWebViewJSContext;

/// Serves one command in place of a slot of the script object.
class HELIO_EXPORT KxWebViewJSApiHandler
{
public:
    virtual ~KxWebViewJSApiHandler();

    virtual void call(KxWebViewJSContext &context) = 0;

    /// The arguments of a call. With @p byName they are keyed by their names, else by their place
    /// in the order of their names ("0", "1", …).
    static QMap<QString, QVariant> parseContextArgs(const KxWebViewJSContext &context, bool byName);
};
