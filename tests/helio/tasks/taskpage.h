#pragma once

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

#include "helio/tasks/taskoperations.h"
#include "tests/support/patience.h"

/// A page's end of the tasks, with programs that the test writes.
class TaskPage : public QObject
{
public:
    /// Starts an operation; @return its number
    int start(const QString &name, const QJsonObject &arguments = {})
    {
        const QJsonObject call{{QStringLiteral("command"), name},
                               {QStringLiteral("callback"), QString::number(++m_calls)},
                               {QStringLiteral("args"), arguments}};
        operations.take(call, this, [this](const QString &callback, const QString &json) {
            m_envelopes.insert(callback.toInt(), QJsonDocument::fromJson(json.toUtf8()).object());
        });
        return m_calls;
    }

    QJsonObject envelope(int call)
    {
        const auto isAnswered = [this, call] { return m_envelopes.contains(call); };
        return QTest::qWaitFor(isAnswered, testsupport::longestWaitMs) ? m_envelopes.value(call)
                                                                       : QJsonObject();
    }

    QJsonObject result(int call)
    {
        return envelope(call).value(QStringLiteral("result")).toObject();
    }

    QJsonObject run(const QString &name, const QJsonObject &arguments = {})
    {
        return result(start(name, arguments));
    }

    /// Replaces a program by a script for sh.
    void program(const QString &name, const QByteArray &script) const
    {
        QFile file(programs.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\n" + script + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QTemporaryDir programs;
    /// What the user chooses in the next dialog.
    QString chosen;
    QStringList opened;
    helio::TaskOperations operations{{programs.path(),
                                      [this](const helio::FileQuestion &) { return chosen; },
                                      [this](const QString &path) {
                                          opened.append(path);
                                          return true;
                                      }}};

private:
    int m_calls = 0;
    QMap<int, QJsonObject> m_envelopes;
};

inline QString word(const QJsonObject &result, const char *key)
{
    return result.value(QLatin1String(key)).toString();
}
