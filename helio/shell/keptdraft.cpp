#include "helio/shell/keptdraft.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int delayMs = 500;
constexpr qint64 longestDraft = 1024 * 1024;
constexpr int largestPicture = 32 * 1024 * 1024;

QString folderOf(const QString &name)
{
    return QFileInfo(name).path();
}

/// What a folder holds survives a crash of the machine only if the folder is on the disk too.
/// Some file systems cannot do that; they keep their folders in another way.
void syncFolder(const QString &folder)
{
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

bool makeFolder(const QString &folder)
{
    if (QFileInfo(folder).isDir())
        return true;
    const QString above = folderOf(folder);
    if (!makeFolder(above) || !QDir().mkdir(folder))
        return false;
    syncFolder(above);
    return true;
}

bool writePrivately(const QString &name, const QByteArray &content)
{
    if (!makeFolder(folderOf(name)))
        return false;
    QSaveFile file(name);
    // Before there is anything in it to read. commit() syncs the file before it takes its name.
    const bool isWritten = file.open(QIODevice::WriteOnly) &&
                           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
                           file.write(content) == content.size() && file.commit();
    if (isWritten)
        syncFolder(folderOf(name));
    return isWritten;
}

bool discard(const QString &name)
{
    if (!QFile::exists(name))
        return true;
    const bool isGone = QFile::remove(name);
    syncFolder(folderOf(name));
    return isGone;
}

} // namespace

namespace shell {

KeptDraft::KeptDraft(const QString &file) : m_file(file)
{
    QFile earlier(file);
    if (earlier.open(QIODevice::ReadOnly))
        m_text = QString::fromUtf8(earlier.read(longestDraft));
    m_writer.setMaxThreadCount(1);
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayMs);
    QObject::connect(&m_delay, &QTimer::timeout, &m_delay, [this] { write(); });
}

KeptDraft::~KeptDraft()
{
    finish();
}

QJsonObject KeptDraft::read() const
{
    return {{QStringLiteral("text"), m_text}};
}

QJsonObject KeptDraft::keep(const QJsonObject &draft)
{
    m_text = draft.value(QStringLiteral("text")).toString();
    // Who types without a pause would put a timer off that starts again with each key.
    if (m_text.isEmpty())
        write();
    else if (!m_delay.isActive())
        m_delay.start();
    return {{QStringLiteral("kept"), m_isKept.load()}};
}

QString KeptDraft::pictures() const
{
    return folderOf(m_file) + QStringLiteral("/feedback-pictures");
}

QJsonObject KeptDraft::keepPicture(const QJsonObject &picture)
{
    // The pictures of a draft that was discarded go before there are others.
    finish();
    const QByteArray content =
        QByteArray::fromBase64(picture.value(QStringLiteral("content")).toString().toLatin1());
    const bool isPicture = content.startsWith("\x89PNG") && content.size() <= largestPicture;
    const QString file =
        pictures() + QStringLiteral("/screenshot-") +
        QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")) +
        QStringLiteral(".png");
    const bool isKept = isPicture && writePrivately(file, content);
    return {{QStringLiteral("file"), isKept ? file : QString()}};
}

void KeptDraft::write()
{
    m_delay.stop();
    if (m_writer.activeThreadCount() > 0)
        m_delay.start();
    else
        m_writer.start([this, text = m_text] { store(text); });
}

void KeptDraft::finish()
{
    const bool isLeft = m_delay.isActive();
    m_delay.stop();
    m_writer.waitForDone();
    if (isLeft)
        store(m_text);
}

void KeptDraft::store(const QString &text)
{
    if (text.isEmpty())
        QDir(pictures()).removeRecursively();
    m_isKept = text.isEmpty() ? discard(m_file) : writePrivately(m_file, text.toUtf8());
    if (!m_isKept)
        qWarning("the draft cannot be kept in %s", qPrintable(m_file));
}

} // namespace shell
