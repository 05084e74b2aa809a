#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>

#include "helio/tasks/running/placing.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// More than a person compares in a window.
constexpr int mostReports = 50;

/// The reports as files; @return why one cannot be written
QString writeReports(const QJsonArray &reports, const QStringList &files)
{
    for (int i = 0; i < files.size(); ++i) {
        const QString fault = written(reports.at(i).toString().toUtf8(), files.at(i));
        if (!fault.isEmpty())
            return fault;
    }
    return {};
}

QJsonArray linesOf(const QByteArray &output)
{
    QJsonArray lines;
    const QList<QByteArray> texts = output.split('\n');
    for (const QByteArray &text : texts) {
        const QJsonObject line = QJsonDocument::fromJson(text).object();
        if (!line.isEmpty())
            lines.append(line);
    }
    return lines;
}

/// What the fault says of each file; it names the first that cannot be read.
QJsonArray problemsOf(const QString &fault, const QStringList &files)
{
    QJsonArray problems;
    for (const QString &file : files) {
        const QString named = file + QStringLiteral(": ");
        const int begin = fault.indexOf(named);
        problems.append(begin < 0 ? QString() : fault.mid(begin + named.size()));
    }
    return problems;
}

} // namespace

TaskEnd tasks::compareReports(const TaskRun &run)
{
    const QJsonArray reports = run.arguments.value(QStringLiteral("reports")).toArray();
    if (reports.size() > mostReports)
        return TaskEnd::failed(texts::tr("These are too many reports."));
    const QTemporaryDir directory;
    QStringList files;
    for (int i = 0; i < reports.size(); ++i)
        files.append(directory.filePath(QString::number(i) + QStringLiteral(".json")));
    const QString fault = writeReports(reports, files);
    if (!fault.isEmpty())
        return TaskEnd::failed(fault);
    TaskProgram program{run.programs + QStringLiteral("/assistantctl"),
                        {QStringLiteral("compare"), QStringLiteral("--json")}};
    if (run.arguments.value(QStringLiteral("here")).toBool())
        program.arguments.append(QStringLiteral("--here"));
    program.arguments += files;
    program.environment.insert(QStringLiteral("OFFICE_ASSISTANT_LANGUAGE"), run.text("language"));
    const ProgramResult ended = runProgram(program, run.isCancelled);
    if (ended.isCancelled)
        return TaskEnd::cancelled();
    const QJsonArray lines = linesOf(ended.output);
    const QJsonArray problems = problemsOf(lines.isEmpty() ? ended.fault : QString(), files);
    const bool isAnswered = !lines.isEmpty() || std::any_of(problems.begin(), problems.end(),
                                                            [](const QJsonValue &one) {
                                                                return !one.toString().isEmpty();
                                                            });
    if (!isAnswered)
        return TaskEnd::failed(ended.fault);
    TaskEnd end;
    end.answer = {{QStringLiteral("lines"), lines}, {QStringLiteral("problems"), problems}};
    return end;
}

} // namespace helio
