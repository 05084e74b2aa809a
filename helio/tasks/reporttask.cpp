#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <optional>

#include "doctor/machine/secrets.h"
#include "helio/tasks/reporting.h"
#include "helio/tasks/running/placing.h"
#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/suitesection.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio {

namespace {

TaskEnd notCollected()
{
    return TaskEnd::failed(texts::tr("The report could not be collected. The disk may be full."));
}

/// A line of the environment without what looks secret. Nothing for a further line of a secret.
class EnvironmentLines
{
public:
    std::optional<QByteArray> shown(const QByteArray &line)
    {
        static const QRegularExpression assignment(
            QStringLiteral("^([A-Za-z_][A-Za-z0-9_]*)=(.*)$"));
        const auto match = assignment.match(QString::fromUtf8(line));
        if (!match.hasMatch())
            return m_isHidden ? std::nullopt : std::make_optional(line);
        const QString value = doctor::withoutSecret(match.captured(1), match.captured(2));
        m_isHidden = value != match.captured(2);
        return m_isHidden ? (match.captured(1) + QLatin1Char('=') + value).toUtf8() : line;
    }

private:
    bool m_isHidden = false;
};

/// The report with the values of variables that look secret hidden, in its section "env".
QByteArray withoutSecrets(const QByteArray &report)
{
    const QByteArray edge = "************";
    QByteArrayList lines;
    EnvironmentLines environment;
    bool isEnvironment = false;
    const QList<QByteArray> parts = report.split('\n');
    for (const QByteArray &part : parts) {
        const bool isEnded = part.endsWith('\r');
        const QByteArray line = isEnded ? part.left(part.size() - 1) : part;
        if (line.startsWith(edge))
            isEnvironment = line.startsWith(edge + "env-begin");
        const auto shown = isEnvironment && !line.startsWith(edge) ? environment.shown(line)
                                                                   : std::make_optional(line);
        if (shown)
            lines.append(isEnded ? *shown + '\r' : *shown);
    }
    return lines.join('\n');
}

bool hideSecrets(QFile &report)
{
    if (!report.open(QIODevice::ReadWrite))
        return false;
    const QByteArray shown = withoutSecrets(report.readAll());
    const bool isWritten = report.seek(0) && report.write(shown) == shown.size() &&
                           report.resize(shown.size()) && report.flush();
    report.close();
    return isWritten;
}

} // namespace

TaskEnd reportedTo(const TaskRun &run, const QString &file)
{
    const CommandResult result = sendCommand(run, QStringLiteral("exportsysinfo"), {}, {file});
    if (result.isCancelled)
        return TaskEnd::cancelled();
    if (!result.fault.isEmpty())
        return TaskEnd::failed(result.fault);
    // The command answers nothing where the file is not safe to open, and an error where it was
    // not written.
    const bool isWhole =
        result.envelope.value(QStringLiteral("result")) == QLatin1String("success") &&
        !result.envelope.contains(QStringLiteral("incomplete"));
    if (!isWhole || QFileInfo(file).size() == 0)
        return notCollected();
    QFile report(file);
    const bool wantsSecrets = run.arguments.value(QStringLiteral("secrets")).toBool();
    if (!wantsSecrets && !hideSecrets(report))
        return notCollected();
    const bool isAdded = report.open(QIODevice::WriteOnly | QIODevice::Append) &&
                         report.write(suiteSection(doctor::thisMachine())) >= 0 && report.flush();
    return isAdded ? TaskEnd() : notCollected();
}

TaskEnd tasks::writeReport(const TaskRun &run)
{
    // The command appends to a file, and stops with half a report on a full disk.
    const QTemporaryDir directory;
    const QString report = directory.filePath(QStringLiteral("report.txt"));
    TaskEnd end = reportedTo(run, report);
    if (end.kind != TaskEnd::Kind::Done)
        return end;
    end.reason = placed(report, run.file);
    if (!end.reason.isEmpty())
        return TaskEnd::failed(end.reason);
    end.file = run.file;
    end.isToOpen = true;
    return end;
}

} // namespace helio
