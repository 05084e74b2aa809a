#pragma once

#include <QString>
#include <QStringList>

#include "helio/shell/graphics.h"

namespace shell {

/// The parsed arguments of helio-shell.
struct ShellOptions
{
    enum Mode {
        ShowWindow,
        PrintHelp,
        PrintVersion,
    };

    /// What is wrong with the arguments; empty if nothing is. Nothing else counts then.
    QString fault;
    Mode mode = ShowWindow;
    /// What the main page starts: one of the desktop entry's actions; empty for nothing.
    QString action;
    /// The start page: the name of a file in the page directory.
    QString page = QStringLiteral("index.html");
    /// "light" or "dark"; empty for the desktop's theme.
    QString theme;
    /// Such as "zh_CN"; empty for the desktop's language.
    QString language;
    Graphics graphics = Graphics::Automatic;
    /// The file for a picture of the window, after which the program ends; empty for none.
    QString screenshot;
    /// The port of the developer tools; 0 for none.
    int debugPort = 0;
};

/// Parses the program's arguments, the first of which is its name.
ShellOptions parseShellOptions(const QStringList &arguments);

/// Whether the main page knows that action.
bool isAction(const QString &name);

/// The text of --help. Needs the application object, which knows the program's name.
QString shellHelp();

} // namespace shell
