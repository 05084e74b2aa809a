#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

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
