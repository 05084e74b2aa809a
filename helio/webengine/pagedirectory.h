#pragma once

#include <QString>

class QUrl;

namespace helio {

/// The directory of the local HTML application: all that a page of the window may show or load.
class PageDirectory
{
public:
    /// The directory @p path, whose symbolic links are resolved once.
    explicit PageDirectory(const QString &path);

    /// The directory as it was named, without a trailing slash.
    QString path() const;

    /// Whether @p url names a file that exists below the directory, wherever its path and the
    /// symbolic links on the way seem to lead. Query and fragment are ignored.
    bool contains(const QUrl &url) const;

    /// The address of the file @p name of the directory.
    QUrl urlOf(const QString &name) const;

private:
    QString m_path;
    QString m_canonicalPrefix;
};

} // namespace helio
