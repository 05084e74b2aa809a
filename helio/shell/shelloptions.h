#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace shell {

/// What the command line asks of the window.
struct ShellOptions
{
    enum Mode {
        ShowWindow,
        PrintHelp,
        PrintVersion,
    };

    Mode mode = ShowWindow;
    /// The start page, a file name of the page directory.
    QString page = QStringLiteral("index.html");
    /// "light" or "dark"; empty for the desktop's.
    QString theme;
    /// As in "zh_CN"; empty for the desktop's.
    QString language;
    /// Where a picture of the window is written to before the program ends; empty for none.
    QString screenshot;
    /// The port of the developer tools; 0 for none.
    int debugPort = 0;
};

/// Reads the command line. Without a value, @p fault says what is wrong with it.
std::optional<ShellOptions> parseShellOptions(const QStringList &arguments, QString *fault);

/// The text of --help. Needs the application object, by which it names the program.
QString shellHelp();

} // namespace shell
