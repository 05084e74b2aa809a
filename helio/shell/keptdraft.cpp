#include "helio/shell/keptdraft.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr int delayMs = 250;
constexpr qint64 longestDraft = 1024 * 1024;
constexpr int largestPicture = 32 * 1024 * 1024;

bool writePrivately(const QString &name, const QByteArray &content)
{
    if (!QDir().mkpath(QFileInfo(name).path()))
        return false;
    QSaveFile file(name);
    // Before there is anything in it to read.
    return file.open(QIODevice::WriteOnly) &&
           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner) &&
           file.write(content) == content.size() && file.commit();
}

} // namespace

namespace shell {

KeptDraft::KeptDraft(const QString &file) : m_file(file)
{
    QFile earlier(file);
    if (earlier.open(QIODevice::ReadOnly))
        m_text = QString::fromUtf8(earlier.read(longestDraft));
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayMs);
    QObject::connect(&m_delay, &QTimer::timeout, &m_delay, [this] { write(); });
}

KeptDraft::~KeptDraft()
{
    if (m_delay.isActive())
        write();
}

QJsonObject KeptDraft::read() const
{
    return {{QStringLiteral("text"), m_text}};
}

QJsonObject KeptDraft::keep(const QJsonObject &draft)
{
    m_text = draft.value(QStringLiteral("text")).toString();
    m_delay.start();
    return {{QStringLiteral("kept"), m_isKept}};
}

QString KeptDraft::pictures() const
{
    return QFileInfo(m_file).path() + QStringLiteral("/feedback-pictures");
}

QJsonObject KeptDraft::keepPicture(const QJsonObject &picture) const
{
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
    if (m_text.isEmpty())
        QDir(pictures()).removeRecursively();
    m_isKept = m_text.isEmpty() ? !QFile::exists(m_file) || QFile::remove(m_file)
                                : writePrivately(m_file, m_text.toUtf8());
    if (!m_isKept)
        qWarning("the draft cannot be kept in %s", qPrintable(m_file));
}

} // namespace shell
