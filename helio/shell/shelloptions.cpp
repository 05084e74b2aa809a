#include "helio/shell/shelloptions.h"

#include <QCommandLineParser>
#include <QLocale>

#include <optional>

namespace {

constexpr int highestPort = 65535;

struct Options
{
    const QCommandLineOption action{
        QStringLiteral("action"),
        QStringLiteral(
            "Begin with the check-up or with the export of the system report: check-up or "
            "export-report."),
        QStringLiteral("ACTION")};
    const QCommandLineOption page{QStringLiteral("page"),
                                  QStringLiteral("Start with this page of the application."),
                                  QStringLiteral("FILE"), QStringLiteral("index.html")};
    const QCommandLineOption theme{
        QStringLiteral("theme"),
        QStringLiteral("Use the light or the dark theme instead of the desktop's."),
        QStringLiteral("THEME")};
    const QCommandLineOption language{
        QStringLiteral("language"),
        QStringLiteral("Use this language, such as en or zh_CN, instead of the desktop's."),
        QStringLiteral("LANGUAGE")};
    const QCommandLineOption graphics{
        QStringLiteral("graphics"),
        QStringLiteral("Draw with the graphics device or with the processor: device or processor. "
                       "Without this option the device draws if there is one."),
        QStringLiteral("WHAT")};
    const QCommandLineOption screenshot{
        QStringLiteral("screenshot"),
        QStringLiteral("Write a picture of the window to PATH (PNG) once its page has painted, "
                       "then exit."),
        QStringLiteral("PATH")};
    const QCommandLineOption debugPort{
        QStringLiteral("debug-port"),
        QStringLiteral("Offer the developer tools on this port of the loopback interface."),
        QStringLiteral("N")};
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help.")};
    const QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version.")};
};

void setUp(QCommandLineParser &parser, const Options &options)
{
    parser.setApplicationDescription(QStringLiteral("Shows the office assistant in a window."));
    parser.addOptions({options.action, options.page, options.theme, options.language,
                       options.graphics, options.screenshot, options.debugPort, options.help,
                       options.version});
}

std::optional<shell::Graphics> graphicsNamed(const QString &name)
{
    if (name == QLatin1String("device"))
        return shell::Graphics::Device;
    if (name == QLatin1String("processor"))
        return shell::Graphics::Processor;
    return {};
}

/// Returns what is wrong with the options; empty if nothing is.
QString readOptions(const QCommandLineParser &parser, const Options &options,
                    shell::ShellOptions &read)
{
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument: ") + parser.positionalArguments().first();
    read.action = parser.value(options.action);
    if (parser.isSet(options.action) && !shell::isAction(read.action))
        return QStringLiteral("--action must be check-up or export-report");
    read.page = parser.value(options.page);
    if (read.page.isEmpty())
        return QStringLiteral("--page needs a file name");
    read.theme = parser.value(options.theme);
    if (parser.isSet(options.theme) && read.theme != QLatin1String("light") &&
        read.theme != QLatin1String("dark"))
        return QStringLiteral("--theme must be light or dark");
    read.language = parser.value(options.language);
    if (parser.isSet(options.language) && QLocale(read.language).language() == QLocale::C)
        return QStringLiteral("--language needs a language such as en or zh_CN");
    if (parser.isSet(options.graphics)) {
        const auto named = graphicsNamed(parser.value(options.graphics));
        if (!named)
            return QStringLiteral("--graphics must be device or processor");
        read.graphics = *named;
    }
    read.screenshot = parser.value(options.screenshot);
    if (parser.isSet(options.screenshot) && read.screenshot.isEmpty())
        return QStringLiteral("--screenshot needs a path");
    if (parser.isSet(options.debugPort)) {
        bool isNumber = false;
        read.debugPort = parser.value(options.debugPort).toInt(&isNumber);
        if (!isNumber || read.debugPort < 1 || read.debugPort > highestPort)
            return QStringLiteral("--debug-port needs a port number");
    }
    return {};
}

} // namespace

shell::ShellOptions shell::parseShellOptions(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    setUp(parser, options);
    ShellOptions read;
    if (!parser.parse(arguments))
        read.fault = parser.errorText();
    else if (parser.isSet(options.help))
        read.mode = ShellOptions::PrintHelp;
    else if (parser.isSet(options.version))
        read.mode = ShellOptions::PrintVersion;
    else
        read.fault = readOptions(parser, options, read);
    return read;
}

bool shell::isAction(const QString &name)
{
    return name == QLatin1String("check-up") || name == QLatin1String("export-report");
}

QString shell::shellHelp()
{
    QCommandLineParser parser;
    setUp(parser, {});
    return parser.helpText();
}
