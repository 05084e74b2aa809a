#include "programs/checktool/answerfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>

#include <stdexcept>

#include "programs/suitehome/suitehome.h"
#include "qtversion/qtversion.h"
#include "texts/texts.h"

namespace programs {

namespace {

const QString fileName = QStringLiteral("/vyrEnv.ini");
const QString group = QStringLiteral("vyrEnv");
const QString lockEnding = QStringLiteral(".lock");
constexpr qint64 mostBytes = qint64(16) * 1024 * 1024;

[[noreturn]] void fail(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

/// QSettings takes the same lock, but waits for it without a bound.
void waitForLock(const QString &path, int lockMs)
{
    QLockFile lock(path + lockEnding);
    lock.setStaleLockTime(0);
    if (lock.tryLock(lockMs))
        return;
    if (lock.error() == QLockFile::LockFailedError)
        fail(texts::tr("another program holds %1").arg(path + lockEnding));
    fail(texts::tr("cannot write into %1").arg(QFileInfo(path).path()));
}

} // namespace

void writeAnswer(const QString &suiteHome, const QString &check, const QString &application,
                 const QString &text, int lockMs)
{
    const QString directory = answerDirectory(suiteHome);
    if (!QDir().mkpath(directory))
        fail(texts::tr("cannot make the directory %1").arg(directory));
    const QString path = directory + fileName;
    const QFileInfo information(path);
    // Reading a pipe would block.
    if (information.exists() && (!information.isFile() || information.size() > mostBytes))
        fail(texts::tr("%1 is not a file of answers").arg(path));
    waitForLock(path, lockMs);
    QSettings file(path, QSettings::IniFormat);
    qtversion::useUtf8(file);
    file.beginGroup(group);
    file.setValue(application + QLatin1Char('-') + check, text);
    file.sync();
    if (file.status() == QSettings::AccessError)
        fail(texts::tr("cannot write %1").arg(path));
}

} // namespace programs
