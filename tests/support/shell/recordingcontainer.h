#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QVector>

#include "host/kxwebviewcontainer.h"

namespace testsupport {

/// A web view that writes down how the page's functions are called.
class RecordingContainer : public KxWebViewContainer
{
    Q_OBJECT

public:
    struct Call
    {
        QString callback;
        QString json;
        bool base64 = false;

        /// The answer, whichever way it was sent.
        QJsonObject answer() const;
    };

    void runCallback(const QString &callback, const QString &json, bool base64) override;

    QVector<Call> calls;
};

} // namespace testsupport
