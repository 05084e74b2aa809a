#include <QJsonArray>
#include <QRegularExpression>

#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"

namespace helio {

namespace {

constexpr int mostNames = 200;

/// What fontconfig shows text of a family in; empty if it cannot be asked.
ProgramResult match(const QString &family, const std::function<bool()> &isCancelled)
{
    // The marks of its patterns, see fc-match(1).
    static const QRegularExpression marks(QStringLiteral("([\\\\:,-])"));
    const QString pattern = QString(family).replace(marks, QStringLiteral("\\\\1"));
    return runProgram(
        {QStringLiteral("fc-match"),
         {QStringLiteral("-f"), QStringLiteral("%{family[0]}"), QStringLiteral("--"), pattern}},
        isCancelled);
}

/// The font packages of Debian and its relatives that are installed; none where there is no dpkg.
QJsonArray fontPackages(const std::function<bool()> &isCancelled)
{
    const ProgramResult listed = runProgram(
        {QStringLiteral("dpkg-query"),
         {QStringLiteral("-W"), QStringLiteral("-f"),
          QStringLiteral("${db:Status-Status} ${Package}\\n"), QStringLiteral("fonts-*")}},
        isCancelled);
    const QByteArray installed = "installed ";
    QJsonArray packages;
    const QList<QByteArray> lines = listed.output.split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(installed))
            packages.append(QString::fromUtf8(line.mid(installed.size())));
    }
    return packages;
}

} // namespace

TaskEnd tasks::findSubstitutes(const TaskRun &run)
{
    QJsonObject families;
    const QJsonArray names = run.arguments.value(QStringLiteral("names")).toArray();
    for (const QJsonValue &name : names) {
        if (families.size() == mostNames)
            break;
        const ProgramResult matched = match(name.toString(), run.isCancelled);
        if (matched.isCancelled)
            return TaskEnd::cancelled();
        if (!matched.fault.isEmpty())
            return TaskEnd::failed(matched.fault);
        families.insert(name.toString(), QString::fromUtf8(matched.output));
    }
    TaskEnd end;
    end.answer = {{QStringLiteral("families"), families},
                  {QStringLiteral("packages"), fontPackages(run.isCancelled)}};
    return end;
}

} // namespace helio
