#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QVector>

#include "host/kxwebviewcontainer.h"

namespace testsupport {

/// A web view that records calls of the page's functions.
class RecordingContainer : public KxWebViewContainer
{
    Q_OBJECT

public:
    struct Call
    {
        QString callback;
        QString json;
        bool base64 = false;

        /// The answer, decoded if it was sent as base64.
        QJsonObject answer() const;
    };

    void runCallback(const QString &callback, const QString &json, bool base64) override;

    QVector<Call> calls;
};

} // namespace testsupport
