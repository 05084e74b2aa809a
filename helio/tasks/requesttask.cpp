#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// As many as a browser follows.
constexpr int mostRedirects = 20;
constexpr qint64 mostShown = 2 * 1024 * 1024;

/// A value in curl's configuration, see curl(1).
QByteArray quoted(const QString &value)
{
    QByteArray text = value.toUtf8();
    text.replace('\\', "\\\\").replace('"', "\\\"").replace('\r', "\\r").replace('\n', "\\n");
    return '"' + text + '"';
}

/// What curl does, in a file: other users can read the command line of a process.
QByteArray configuration(const TaskRun &run, const QTemporaryDir &directory)
{
    QByteArray lines =
        "url = " + quoted(run.text("url")) + "\nsilent\nshow-error\ninsecure\nlocation\n" +
        "globoff\nproto = \"=http,https\"\nproto-redir = \"=http,https\"\nmax-redirs = " +
        QByteArray::number(mostRedirects) + "\nwrite-out = \"%{json}\"\n";
    lines += "output = " + quoted(directory.filePath(QStringLiteral("body"))) + '\n';
    lines += "dump-header = " + quoted(directory.filePath(QStringLiteral("headers"))) + '\n';
    const QJsonArray headers = run.arguments.value(QStringLiteral("headers")).toArray();
    for (const QJsonValue &header : headers) {
        const QString line = header[QStringLiteral("name")].toString() + QStringLiteral(": ") +
                             header[QStringLiteral("value")].toString();
        lines += "header = " + quoted(line) + '\n';
    }
    if (run.text("method") == QLatin1String("POST"))
        lines += "data-binary = " +
                 quoted(QLatin1Char('@') + directory.filePath(QStringLiteral("sent"))) + '\n';
    return lines;
}

bool written(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

QByteArray startOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(mostShown) : QByteArray();
}

/// The headers of the last answer; those before are of redirects.
QJsonArray headersOf(const QByteArray &dump)
{
    QJsonArray headers;
    const QStringList lines = QString::fromUtf8(dump).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const int colon = line.indexOf(QLatin1Char(':'));
        if (line.startsWith(QLatin1String("HTTP/")))
            headers = {};
        else if (colon > 0)
            headers.append(QJsonObject{{QStringLiteral("name"), line.left(colon)},
                                       {QStringLiteral("value"), line.mid(colon + 1).trimmed()}});
    }
    return headers;
}

/// When each step had ended, in milliseconds since the start; zero for one that was not needed.
QJsonObject timesOf(const QJsonObject &told)
{
    const auto milliseconds = [&told](const char *name) {
        return told.value(QLatin1String(name)).toDouble() * 1000;
    };
    return {{QStringLiteral("name"), milliseconds("time_namelookup")},
            {QStringLiteral("connect"), milliseconds("time_connect")},
            {QStringLiteral("encrypt"), milliseconds("time_appconnect")},
            {QStringLiteral("firstByte"), milliseconds("time_starttransfer")},
            {QStringLiteral("whole"), milliseconds("time_total")}};
}

} // namespace

bool canTimeRequests()
{
    return !QStandardPaths::findExecutable(QStringLiteral("curl")).isEmpty();
}

TaskEnd tasks::timeRequest(const TaskRun &run)
{
    const QTemporaryDir directory;
    const QString settings = directory.filePath(QStringLiteral("settings"));
    if (!written(directory.filePath(QStringLiteral("sent")), run.text("body").toUtf8()) ||
        !written(settings, configuration(run, directory)))
        return TaskEnd::failed(texts::tr("there is no room for temporary files"));
    const ProgramResult ran =
        runProgram({QStringLiteral("curl"),
                    {QStringLiteral("--disable"), QStringLiteral("--config"), settings}},
                   run.isCancelled);
    if (ran.isCancelled)
        return TaskEnd::cancelled();
    const QJsonObject told = QJsonDocument::fromJson(ran.output).object();
    if (told.isEmpty())
        return TaskEnd::failed(ran.fault);
    TaskEnd end;
    end.answer = {
        {QStringLiteral("status"), told.value(QStringLiteral("http_code"))},
        {QStringLiteral("problem"),
         ran.fault.isEmpty() ? QString() : told.value(QStringLiteral("errormsg")).toString()},
        {QStringLiteral("times"), timesOf(told)},
        {QStringLiteral("size"), told.value(QStringLiteral("size_download"))},
        {QStringLiteral("address"), told.value(QStringLiteral("remote_ip"))},
        {QStringLiteral("protocol"), told.value(QStringLiteral("http_version"))},
        {QStringLiteral("headers"),
         headersOf(startOf(directory.filePath(QStringLiteral("headers"))))},
        {QStringLiteral("body"),
         QString::fromUtf8(startOf(directory.filePath(QStringLiteral("body"))))}};
    return end;
}

} // namespace helio
