#include "helio/webengine/pagedirectory.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

/// Whether the path contains an encoded separator or zero byte, which no file name can.
bool hasEncodedSeparator(const QUrl &url)
{
    const QString path = url.path(QUrl::FullyEncoded);
    for (const char *code : {"%2f", "%5c", "%00"}) {
        if (path.contains(QLatin1String(code), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

} // namespace

namespace helio {

PageDirectory::PageDirectory(const QString &path) : m_path(QDir::cleanPath(path))
{
    const QString canonical = QFileInfo(m_path).canonicalFilePath();
    if (!canonical.isEmpty())
        m_canonicalPrefix = canonical + QLatin1Char('/');
}

QString PageDirectory::path() const
{
    return m_path;
}

bool PageDirectory::contains(const QUrl &url) const
{
    if (m_canonicalPrefix.isEmpty() || !url.isValid() || !url.authority().isEmpty() ||
        url.scheme() != QLatin1String("file") || hasEncodedSeparator(url))
        return false;
    const QFileInfo file(url.toLocalFile());
    return file.isAbsolute() && file.isFile() &&
           file.canonicalFilePath().startsWith(m_canonicalPrefix);
}

QUrl PageDirectory::urlOf(const QString &name) const
{
    return QUrl::fromLocalFile(m_path + QLatin1Char('/') + name);
}

} // namespace helio
