#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace ctl {

/// What the user asked for on the command line.
struct CommandLine
{
    enum Mode {
        SingleCommand,
        Session,
        ListCommands,
        ShowText, ///< help or version: print `text` and end
    };

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

/// Reads the program's arguments (the first is its name). Without a value, @p fault says what is
/// wrong with them.
std::optional<CommandLine> parseCommandLine(const QStringList &arguments, QString *fault);

} // namespace ctl
