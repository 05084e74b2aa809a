#include "helio/ctl/commandline.h"

#include <QCommandLineParser>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace {

const QCommandLineOption
    pageOption(QStringLiteral("page"),
               QStringLiteral("Send the command from this page: main or child."),
               QStringLiteral("PAGE"), QStringLiteral("main"));
const QCommandLineOption chooseOption(
    QStringLiteral("choose"),
    QStringLiteral("Answer the next file dialog with PATH. Repeat for further dialogs; "
                   "a dialog without an answer is cancelled."),
    QStringLiteral("PATH"));
const QCommandLineOption
    waitOption(QStringLiteral("wait"),
               QStringLiteral("Keep running MS milliseconds for later answers."),
               QStringLiteral("MS"));
const QCommandLineOption
    untilOption(QStringLiteral("until"),
                QStringLiteral("Keep running until that callback came, 30 s or --wait at most."),
                QStringLiteral("CALLBACK"));
const QCommandLineOption openOption(QStringLiteral("open"),
                                    QStringLiteral("Really open what the library opens."));
const QCommandLineOption traceOption(QStringLiteral("trace"),
                                     QStringLiteral("Also print what happens besides answers."));
const QCommandLineOption prettyOption(QStringLiteral("pretty"),
                                      QStringLiteral("Print indented JSON."));
const QCommandLineOption
    sessionOption(QStringLiteral("session"),
                  QStringLiteral("Read requests from standard input, a JSON object a line."));
const QCommandLineOption commandsOption(QStringLiteral("commands"),
                                        QStringLiteral("Print the names of all commands."));
const QCommandLineOption helpOption({QStringLiteral("h"), QStringLiteral("help")},
                                    QStringLiteral("Print this text."));
const QCommandLineOption versionOption({QStringLiteral("v"), QStringLiteral("version")},
                                       QStringLiteral("Print the version."));

/// The JSON value of @p text, which need not be an object or array.
std::optional<QJsonValue> parseJsonValue(const QString &text)
{
    const QByteArray wrapped = '[' + text.toUtf8() + ']';
    const QJsonDocument document = QJsonDocument::fromJson(wrapped);
    const QJsonArray values = document.array();
    return values.size() == 1 ? std::optional<QJsonValue>(values.first()) : std::nullopt;
}

/// Reads NAME=VALUE or NAME:=JSON into @p args; gives what is wrong with it, or an empty text.
QString readArgument(const QString &argument, QJsonObject *args)
{
    const int equals = argument.indexOf(QLatin1Char('='));
    const bool isJson = equals > 0 && argument.at(equals - 1) == QLatin1Char(':');
    const QString name = argument.left(isJson ? equals - 1 : equals);
    if (equals < 0 || name.isEmpty())
        return QStringLiteral("not of the form NAME=VALUE or NAME:=JSON: ") + argument;
    const QString value = argument.mid(equals + 1);
    if (!isJson) {
        args->insert(name, value);
        return {};
    }
    const std::optional<QJsonValue> json = parseJsonValue(value);
    if (!json)
        return QStringLiteral("not JSON: ") + value;
    args->insert(name, *json);
    return {};
}

QString readOptions(const QCommandLineParser &parser, ctl::CommandLine *line)
{
    line->page = parser.value(pageOption);
    if (parser.isSet(sessionOption) && parser.isSet(commandsOption))
        return QStringLiteral("--session and --commands exclude each other");
    if (line->page != QLatin1String("main") && line->page != QLatin1String("child"))
        return QStringLiteral("--page is main or child");
    if (parser.isSet(waitOption)) {
        bool isNumber = false;
        line->waitMs = parser.value(waitOption).toInt(&isNumber);
        if (!isNumber || *line->waitMs < 0)
            return QStringLiteral("--wait needs a number of milliseconds");
    }
    line->choices = parser.values(chooseOption);
    line->untilCallback = parser.value(untilOption);
    if (parser.isSet(untilOption) && line->untilCallback.isEmpty())
        return QStringLiteral("--until needs the name of a callback");
    line->opensReally = parser.isSet(openOption);
    line->traces = parser.isSet(traceOption);
    line->pretty = parser.isSet(prettyOption);
    return {};
}

QString readCommand(QStringList words, ctl::CommandLine *line)
{
    if (line->mode != ctl::CommandLine::SingleCommand)
        return words.isEmpty() ? QString()
                               : QStringLiteral("unexpected argument: ") + words.first();
    if (words.isEmpty())
        return QStringLiteral("which command? --commands lists them");
    line->command = words.takeFirst();
    for (const QString &word : qAsConst(words)) {
        QString fault = readArgument(word, &line->args);
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

} // namespace

std::optional<ctl::CommandLine> ctl::parseCommandLine(const QStringList &arguments, QString *fault)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Runs a command of the office assistant and prints each event as a line of JSON."));
    parser.addOptions({pageOption, chooseOption, waitOption, untilOption, openOption, traceOption,
                       prettyOption, sessionOption, commandsOption, helpOption, versionOption});
    parser.addPositionalArgument(QStringLiteral("COMMAND"), QStringLiteral("The command to send."));
    parser.addPositionalArgument(
        QStringLiteral("NAME=VALUE"),
        QStringLiteral("A text argument; NAME:=JSON gives any JSON value."),
        QStringLiteral("[NAME=VALUE | NAME:=JSON]…"));
    if (!parser.parse(arguments)) {
        *fault = parser.errorText();
        return std::nullopt;
    }
    CommandLine line;
    if (parser.isSet(helpOption) || parser.isSet(versionOption)) {
        line.mode = CommandLine::ShowText;
        line.text = parser.isSet(helpOption)
                        ? parser.helpText()
                        : QStringLiteral("assistantctl " ASSISTANT_VERSION "\n");
        return line;
    }
    if (parser.isSet(sessionOption))
        line.mode = CommandLine::Session;
    else if (parser.isSet(commandsOption))
        line.mode = CommandLine::ListCommands;
    *fault = readOptions(parser, &line);
    if (fault->isEmpty())
        *fault = readCommand(parser.positionalArguments(), &line);
    return fault->isEmpty() ? std::optional<CommandLine>(line) : std::nullopt;
}
