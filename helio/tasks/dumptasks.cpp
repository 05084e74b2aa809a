#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include "doctor/editors/keyeditor.h"
#include "doctor/machine/filereading.h"
#include "doctor/machine/machine.h"
#include "helio/tasks/running/dumpsignal.h"
#include "helio/tasks/tasks.h"
#include "host/krt.h"
#include "texts/texts.h"

namespace helio {

namespace {

constexpr int mostDumps = 500;
constexpr qint64 largestSettings = 4 << 20;

QString dumpFolder()
{
    return krt::dirs::orvaneHome() + QStringLiteral("/tmp/dump");
}

/// As the file has it: QSettings would go on with what it could not write.
bool areDumpsKept()
{
    const doctor::Machine machine = doctor::thisMachine();
    const QString path = machine.variable(QStringLiteral("XDG_CONFIG_HOME")).value_or(QString()) +
                         QStringLiteral("/Orvane/Office.conf");
    const auto content = doctor::readFile(path, largestSettings).content;
    if (!content)
        return true;
    const auto found =
        doctor::keyEditor(doctor::Format::Ini)
            .find(*content, {QStringLiteral("6.0"), QStringLiteral("common/CrashDump/SaveDump")});
    return !found || (found->value != QLatin1String("false") && found->value != QLatin1String("0"));
}

/// The suite's program that has left the file; empty for any other file.
QString programOf(const QString &name)
{
    static const QRegularExpression pattern(
        QStringLiteral("\\A(tbl|vyr|shw|vyrpdf|vyroffice)_\\d+.dmp\\z"));
    return pattern.match(name).captured(1);
}

QJsonObject described(const QFileInfo &file)
{
    return {{QStringLiteral("name"), file.fileName()},
            {QStringLiteral("size"), file.size()},
            {QStringLiteral("changed"), file.lastModified().toUTC().toString(Qt::ISODate)},
            {QStringLiteral("program"), programOf(file.fileName())},
            {QStringLiteral("signal"), signalOfDump(file.filePath())}};
}

} // namespace

TaskEnd tasks::listDumps(const TaskRun & /*run*/)
{
    QJsonArray dumps;
    const QFileInfoList files = QDir(dumpFolder()).entryInfoList(QDir::Files, QDir::Time);
    for (const QFileInfo &file : files.mid(0, mostDumps))
        dumps.append(described(file));
    TaskEnd end;
    end.answer = {{QStringLiteral("kept"), areDumpsKept()},
                  {QStringLiteral("folder"), dumpFolder()},
                  {QStringLiteral("count"), files.size()},
                  {QStringLiteral("dumps"), dumps}};
    return end;
}

TaskEnd tasks::openDumps(const TaskRun & /*run*/)
{
    if (!QDir(dumpFolder()).exists())
        return TaskEnd::failed(texts::tr("There is no folder %1.").arg(dumpFolder()));
    TaskEnd end;
    end.file = dumpFolder();
    end.isToOpen = true;
    return end;
}

} // namespace helio
