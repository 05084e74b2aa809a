#include "helio/shell/shelloptions.h"

#include <QCommandLineParser>
#include <QLocale>

namespace {

constexpr int highestPort = 65535;

const QCommandLineOption pageOption(QStringLiteral("page"),
                                    QStringLiteral("Start with this page of the application."),
                                    QStringLiteral("FILE"), QStringLiteral("index.html"));
const QCommandLineOption themeOption(QStringLiteral("theme"),
                                     QStringLiteral("light or dark, in place of the desktop's."),
                                     QStringLiteral("THEME"));
const QCommandLineOption
    languageOption(QStringLiteral("language"),
                   QStringLiteral("Such as en or zh_CN, in place of the desktop's."),
                   QStringLiteral("LANGUAGE"));
const QCommandLineOption screenshotOption(
    QStringLiteral("screenshot"),
    QStringLiteral("Write a picture of the window to PATH (PNG) once its page has painted, "
                   "and end."),
    QStringLiteral("PATH"));
const QCommandLineOption debugPortOption(
    QStringLiteral("debug-port"),
    QStringLiteral("Offer the developer tools on this port of the loopback interface."),
    QStringLiteral("N"));

const QCommandLineOption helpOption({QStringLiteral("h"), QStringLiteral("help")},
                                    QStringLiteral("Print this text."));
const QCommandLineOption versionOption({QStringLiteral("v"), QStringLiteral("version")},
                                       QStringLiteral("Print the version."));

void setUp(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        QStringLiteral("Shows the office assistant in a window of its own."));
    parser.addOptions({pageOption, themeOption, languageOption, screenshotOption, debugPortOption,
                       helpOption, versionOption});
}

/// Gives what is wrong with the options, or an empty text.
QString readOptions(const QCommandLineParser &parser, shell::ShellOptions *options)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument: ") + parser.positionalArguments().first();
    options->page = parser.value(pageOption);
    if (options->page.isEmpty())
        return QStringLiteral("--page needs a file name");
    options->theme = parser.value(themeOption);
    if (parser.isSet(themeOption) && options->theme != QLatin1String("light") &&
        options->theme != QLatin1String("dark"))
        return QStringLiteral("--theme is light or dark");
    options->language = parser.value(languageOption);
    if (parser.isSet(languageOption) && QLocale(options->language).language() == QLocale::C)
        return QStringLiteral("--language needs a language such as en or zh_CN");
    options->screenshot = parser.value(screenshotOption);
    if (parser.isSet(screenshotOption) && options->screenshot.isEmpty())
        return QStringLiteral("--screenshot needs a path");
    if (parser.isSet(debugPortOption)) {
        bool isNumber = false;
        options->debugPort = parser.value(debugPortOption).toInt(&isNumber);
        if (!isNumber || options->debugPort < 1 || options->debugPort > highestPort)
            return QStringLiteral("--debug-port needs a port number");
    }
    return {};
}

} // namespace

std::optional<shell::ShellOptions> shell::parseShellOptions(const QStringList &arguments,
                                                            QString *fault)
{
    QCommandLineParser parser;
    setUp(parser);
    if (!parser.parse(arguments)) {
        *fault = parser.errorText();
        return std::nullopt;
    }
    ShellOptions options;
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        options.mode =
            parser.isSet(helpOption) ? ShellOptions::PrintHelp : ShellOptions::PrintVersion;
        return options;
    }
    *fault = readOptions(parser, &options);
    return fault->isEmpty() ? std::optional<ShellOptions>(options) : std::nullopt;
}

QString shell::shellHelp()
{
    QCommandLineParser parser;
    setUp(parser);
    return parser.helpText();
}
