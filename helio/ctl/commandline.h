#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace ctl {

/// The parsed arguments of assistantctl.
struct CommandLine
{
    enum Mode {
        SingleCommand,
        Session,
        ListCommands,
        ShowText, ///< help or version: print `text` and end
    };

    /// What is wrong with the arguments; empty if nothing is. Nothing else counts then.
    QString fault;
    Mode mode = SingleCommand;
    QString text;
    QString page = QStringLiteral("main");
    QStringList choices;
    std::optional<int> waitMs;
    QString untilCallback;
    bool opensReally = false;
    bool traces = false;
    bool pretty = false;
    QString command;
    QJsonObject args;
};

/// Parses the program's arguments, the first of which is its name.
CommandLine parseCommandLine(const QStringList &arguments);

} // namespace ctl
