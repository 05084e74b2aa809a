#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "helio/tasks/running/taskprogram.h"
#include "helio/tasks/tasks.h"
#include "texts/texts.h"

namespace helio::tasks {

namespace {

constexpr char pathKey[] = "filepath";

TaskEnd sent(const TaskRun &run, const QString &command, const QJsonObject &arguments)
{
    const CommandResult result = sendCommand(run, command, arguments);
    if (result.isCancelled)
        return TaskEnd::cancelled();
    if (!result.fault.isEmpty())
        return TaskEnd::failed(result.fault);
    TaskEnd end;
    end.answer.insert(QStringLiteral("envelope"), result.envelope);
    return end;
}

} // namespace

TaskEnd readSystem(const TaskRun &run)
{
    return sent(run, QStringLiteral("stratcheckenv"), {});
}

TaskEnd compareFonts(const TaskRun &run)
{
    const QString document =
        QString::fromUtf8(QByteArray::fromBase64(run.text(pathKey).toLatin1()));
    // The command's script cannot take every name.
    const QTemporaryDir directory;
    const QString link =
        directory.filePath(QStringLiteral("document.") + QFileInfo(document).suffix());
    if (!QFile::link(document, link))
        return TaskEnd::failed(texts::tr("%1 cannot be written: %2")
                                   .arg(link, texts::tr("there is no room for temporary files")));
    return sent(run, QStringLiteral("comparefont"),
                {{QLatin1String(pathKey), QString::fromLatin1(link.toUtf8().toBase64())}});
}

TaskEnd askServer(const TaskRun &run)
{
    return sent(run, QStringLiteral("openremoveurlcheck"), run.arguments);
}

TaskEnd checkInput(const TaskRun &run)
{
    return sent(run, QStringLiteral("inputcheck"), {});
}

} // namespace helio::tasks
