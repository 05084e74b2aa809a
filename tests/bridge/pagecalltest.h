#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>

#include <memory>

#include "tests/support/probeobject.h"
#include "tests/support/shell/recordingcontainer.h"

/// A script object, and what it answers to the page.
class PageCallTest : public QObject
{
protected:
    void setUp()
    {
        m_container = std::make_unique<testsupport::RecordingContainer>();
        m_object = new ProbeObject(m_container.get());
    }

    static QString callText(const QString &command, const QJsonObject &args = {})
    {
        const QJsonObject call{{QStringLiteral("command"), command},
                               {QStringLiteral("callback"), QStringLiteral("back")},
                               {QStringLiteral("args"), args}};
        return QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact));
    }

    static QString base64(const QByteArray &bytes) { return QString::fromLatin1(bytes.toBase64()); }

    QJsonObject onlyAnswer(const QString &callback = QStringLiteral("back")) const
    {
        if (m_container->calls.size() != 1 || m_container->calls.first().callback != callback)
            return {{QStringLiteral("answers"), m_container->calls.size()}};
        return m_container->calls.first().answer();
    }

    std::unique_ptr<testsupport::RecordingContainer> m_container;
    ProbeObject *m_object = nullptr;
};
