#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

namespace ctl {

/// One request of a session.
struct SessionRequest
{
    enum Kind {
        Command,
        Wait,
        Until,
        Faulty, ///< cannot be carried out; `fault` says why
    };

    Kind kind = Faulty;
    QString fault;
    QJsonValue id; ///< as sent; null if there is none
    QString page = QStringLiteral("main");
    QString command;
    QJsonObject args;
    QStringList choices;
    int durationMs = 0; ///< how long to wait, or to wait at most for the callback
    QString callback;   ///< of Until
};

/// Parses a line of a session.
SessionRequest parseSessionRequest(const QByteArray &line);

} // namespace ctl
