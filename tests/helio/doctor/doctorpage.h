#pragma once

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include "helio/doctor/doctoroperations.h"
#include "tests/support/patience.h"

/// A page's end of the operations.
class DoctorPage : public QObject
{
public:
    bool call(const QString &operation, const QJsonObject &arguments = {})
    {
        const QJsonObject call{{QStringLiteral("command"), operation},
                               {QStringLiteral("callback"), QString::number(++m_calls)},
                               {QStringLiteral("args"), arguments}};
        return operations.take(call, this, [this](const QString &callback, const QString &json) {
            receive(callback, json);
        });
    }

    /// The envelope that ends the last call.
    QJsonObject ended()
    {
        const auto isOver = [this] { return envelopes.contains(m_calls); };
        return QTest::qWaitFor(isOver, testsupport::longestWaitMs) ? envelopes.value(m_calls)
                                                                   : QJsonObject();
    }

    QJsonObject result(const QString &operation, const QJsonObject &arguments = {})
    {
        lines.clear();
        call(operation, arguments);
        return ended().value(QStringLiteral("result")).toObject();
    }

    QString error(const QString &operation, const QJsonObject &arguments)
    {
        call(operation, arguments);
        return ended().value(QStringLiteral("error")).toString();
    }

    /// The lines of that type among those of the last result.
    QVector<QJsonObject> linesOf(const char *type) const
    {
        QVector<QJsonObject> found;
        for (const QJsonObject &line : lines) {
            if (line.value(QStringLiteral("type")) == QLatin1String(type))
                found.append(line);
        }
        return found;
    }

    /// Looks, and plans a repair of all findings of a check.
    QJsonObject planned(const QString &check, const QString &repair)
    {
        result(QStringLiteral("doctor.look"), {{QStringLiteral("checks"), QJsonArray{check}}});
        QJsonArray numbers;
        for (const QJsonObject &finding : linesOf("finding"))
            numbers.append(finding.value(QStringLiteral("finding")));
        return result(QStringLiteral("doctor.plan"),
                      {{QStringLiteral("findings"), numbers}, {QStringLiteral("repair"), repair}});
    }

    QJsonObject fixed(const QString &check, const QString &repair)
    {
        const QJsonObject plan = planned(check, repair);
        return result(QStringLiteral("doctor.fix"),
                      {{QStringLiteral("plan"), plan.value(QStringLiteral("plan"))}});
    }

    QTemporaryDir shippedChecks;
    helio::DoctorOperations operations{shippedChecks.path()};
    QVector<QJsonObject> lines;
    QMap<int, QJsonObject> envelopes;

private:
    void receive(const QString &callback, const QString &json)
    {
        if (QThread::currentThread() != qApp->thread())
            qFatal("delivered on another thread");
        const QJsonObject envelope = QJsonDocument::fromJson(json.toUtf8()).object();
        if (envelope.contains(QStringLiteral("line")))
            lines.append(envelope.value(QStringLiteral("line")).toObject());
        else
            envelopes.insert(callback.toInt(), envelope);
    }

    int m_calls = 0;
};
