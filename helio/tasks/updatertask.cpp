#include <QFile>
#include <QLockFile>

#include "doctor/editors/keyeditor.h"
#include "helio/tasks/running/placing.h"
#include "helio/tasks/tasks.h"
#include "host/vyrupdate_linux.h"
#include "texts/texts.h"

namespace helio {

namespace {

/// Where the suite installs its updater.
constexpr char updaterDirectory[] = "/opt/orvane/vtool/";
constexpr char updaterGroup[] = "update";
constexpr int lockMs = 5000;

TaskEnd unreadable(const QFile &file)
{
    return TaskEnd::failed(
        texts::tr("%1 cannot be read: %2").arg(file.fileName(), file.errorString()));
}

} // namespace

TaskEnd tasks::setUpdaterValue(const TaskRun &run)
{
    const QString path = vyrupdate_linux::getUpdateCfgPath(QLatin1String(updaterDirectory));
    const QStringList key{QLatin1String(updaterGroup), run.text("key")};
    const doctor::KeyEditor &editor = doctor::keyEditor(doctor::Format::Ini);
    // Every QSettings takes this lock to write. Where nobody may lock, nobody may write beside.
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(lockMs) && lock.error() == QLockFile::LockFailedError)
        return TaskEnd::failed(texts::tr("another program holds %1").arg(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    const doctor::EditedContent edited = editor.set(file.readAll(), key, run.text("value"));
    file.close();
    if (!edited.content)
        return TaskEnd::failed(edited.problem);
    const QString fault = written(*edited.content, path);
    if (!fault.isEmpty())
        return TaskEnd::failed(fault);
    if (!file.open(QIODevice::ReadOnly))
        return unreadable(file);
    const auto found = editor.find(file.readAll(), key);
    if (!found || found->value != run.text("value"))
        return TaskEnd::failed(texts::tr("something else was read back"));
    TaskEnd end;
    end.file = path;
    return end;
}

} // namespace helio
