#include "helio/ctl/commandline.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace {

struct Options
{
    const QCommandLineOption page{QStringLiteral("page"),
                                  QStringLiteral("The page that sends the command: main or child."),
                                  QStringLiteral("PAGE"), QStringLiteral("main")};
    const QCommandLineOption choose{
        QStringLiteral("choose"),
        QStringLiteral("Choose PATH in the next file dialog. Repeat it for further dialogs; "
                       "a dialog without a choice is cancelled."),
        QStringLiteral("PATH")};
    const QCommandLineOption wait{
        QStringLiteral("wait"),
        QStringLiteral("Keep running for MS milliseconds to receive later answers."),
        QStringLiteral("MS")};
    const QCommandLineOption until{
        QStringLiteral("until"),
        QStringLiteral("Keep running until CALLBACK is called, for at most 30 s or --wait."),
        QStringLiteral("CALLBACK")};
    const QCommandLineOption open{QStringLiteral("open"),
                                  QStringLiteral("Really open the files that the library opens.")};
    const QCommandLineOption trace{
        QStringLiteral("trace"),
        QStringLiteral("Also print window signals, dialogs, opened files, started programs and "
                       "clipboard changes.")};
    const QCommandLineOption pretty{QStringLiteral("pretty"),
                                    QStringLiteral("Print indented JSON.")};
    const QCommandLineOption session{
        QStringLiteral("session"),
        QStringLiteral("Read requests from standard input, one JSON object per line.")};
    const QCommandLineOption commands{QStringLiteral("commands"),
                                      QStringLiteral("List all commands.")};
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help.")};
    const QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version.")};
};

/// Reads any JSON value, not only an object or array.
std::optional<QJsonValue> parseJsonValue(const QString &text)
{
    const QByteArray wrapped = '[' + text.toUtf8() + ']';
    const QJsonDocument document = QJsonDocument::fromJson(wrapped);
    const QJsonArray values = document.array();
    return values.size() == 1 ? std::optional<QJsonValue>(values.first()) : std::nullopt;
}

/// Adds NAME=VALUE or NAME:=JSON to @p args. Returns what is wrong with it; empty if nothing is.
QString readArgument(const QString &argument, QJsonObject &args)
{
    const int equals = argument.indexOf(QLatin1Char('='));
    const bool isJson = equals > 0 && argument.at(equals - 1) == QLatin1Char(':');
    const QString name = argument.left(isJson ? equals - 1 : equals);
    if (equals < 0 || name.isEmpty())
        return QStringLiteral("expected NAME=VALUE or NAME:=JSON: ") + argument;
    const QString value = argument.mid(equals + 1);
    const std::optional<QJsonValue> json = isJson ? parseJsonValue(value) : QJsonValue(value);
    if (!json)
        return QStringLiteral("not JSON: ") + value;
    args.insert(name, *json);
    return {};
}

QString readOptions(const QCommandLineParser &parser, const Options &options,
                    ctl::CommandLine &line)
{
    line.page = parser.value(options.page);
    if (parser.isSet(options.session) && parser.isSet(options.commands))
        return QStringLiteral("--session and --commands cannot be used together");
    if (line.page != QLatin1String("main") && line.page != QLatin1String("child"))
        return QStringLiteral("--page must be main or child");
    if (parser.isSet(options.wait)) {
        bool isNumber = false;
        line.waitMs = parser.value(options.wait).toInt(&isNumber);
        if (!isNumber || *line.waitMs < 0)
            return QStringLiteral("--wait needs a number of milliseconds");
    }
    line.choices = parser.values(options.choose);
    line.untilCallback = parser.value(options.until);
    if (parser.isSet(options.until) && line.untilCallback.isEmpty())
        return QStringLiteral("--until needs the name of a callback");
    line.opensReally = parser.isSet(options.open);
    line.traces = parser.isSet(options.trace);
    line.pretty = parser.isSet(options.pretty);
    return {};
}

QString readCommand(QStringList words, ctl::CommandLine &line)
{
    if (line.mode != ctl::CommandLine::SingleCommand)
        return words.isEmpty() ? QString()
                               : QStringLiteral("unexpected argument: ") + words.first();
    if (words.isEmpty())
        return QStringLiteral("no command given; --commands lists them");
    line.command = words.takeFirst();
    for (const QString &word : qAsConst(words)) {
        QString fault = readArgument(word, line.args);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

} // namespace

ctl::CommandLine ctl::parseCommandLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Runs a command of the office assistant and prints each event as one line of JSON.\n"
        "The doctor and its explanations have a help of their own: assistantctl doctor --help,\n"
        "assistantctl why --help."));
    parser.addOptions({options.page, options.choose, options.wait, options.until, options.open,
                       options.trace, options.pretty, options.session, options.commands,
                       options.help, options.version});
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("The command to run."));
    parser.addPositionalArgument(
        QStringLiteral("NAME=VALUE"),
        QStringLiteral("An argument as text; NAME:=JSON gives any JSON value."),
        QStringLiteral("[NAME=VALUE | NAME:=JSON]…"));
    CommandLine line;
    if (!parser.parse(arguments)) {
        line.fault = parser.errorText();
    } else if (parser.isSet(options.help) || parser.isSet(options.version)) {
        line.mode = CommandLine::ShowText;
        line.text = parser.isSet(options.help)
                        ? parser.helpText()
                        : QStringLiteral("assistantctl " ASSISTANT_VERSION "\n");
    } else {
        if (parser.isSet(options.session))
            line.mode = CommandLine::Session;
        else if (parser.isSet(options.commands))
            line.mode = CommandLine::ListCommands;
        line.fault = readOptions(parser, options, line);
        if (line.fault.isEmpty())
            line.fault = readCommand(parser.positionalArguments(), line);
    }
    return line;
}
