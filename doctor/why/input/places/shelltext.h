#pragma once

#include <QByteArray>
#include <QVector>

#include <optional>

namespace doctor {

/// What a line of a shell script does to the environment, as far as the text alone says it.
struct ShellStatement
{
    enum class Kind {
        Assign,     ///< gives the variable `name` a value
        Export,     ///< hands the variable `name` on to programs
        Remove,     ///< takes the variable `name` away
        ForCommand, ///< gives `name` a value for one program only
        Read,       ///< runs another file: `value` is its path, "~/" stands for the home directory
        Command,    ///< runs `name`; `value` is the first argument
    };

    Kind kind = Kind::Command;
    QByteArray name;
    /// Nothing if something is substituted in it.
    std::optional<QByteArray> value;
    /// From 1.
    int line = 0;
    /// Assign: whether programs get it without an Export. ForCommand: whether the program takes the
    /// shell's place.
    bool isExported = false;
    /// False inside conditions, loops, functions and pipes, and behind what may end the script.
    bool isCertain = true;
};

/// Reads a script for sh or bash without running anything of it.
QVector<ShellStatement> shellStatements(const QByteArray &script);

} // namespace doctor
