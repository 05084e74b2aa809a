#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

namespace ctl {

/// One line of a session.
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
    QJsonValue id; ///< as sent, else null
    QString page = QStringLiteral("main");
    QString command;
    QJsonObject args;
    QStringList choices;
    int durationMs = 0; ///< of a wait, or the longest time of an until
    QString callback;   ///< what an until waits for
};

SessionRequest parseSessionRequest(const QByteArray &line);

} // namespace ctl
