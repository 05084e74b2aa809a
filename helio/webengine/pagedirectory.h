#pragma once

#include <QString>

class QUrl;

namespace helio {

/// The directory of the HTML application. Pages may show and load its files only.
class PageDirectory
{
public:
    /// Resolves symbolic links in @p path once.
    explicit PageDirectory(const QString &path);

    /// The path as given, without a trailing slash.
    QString path() const;

    /// Whether @p url is the address of an existing file below the directory, once symbolic links
    /// and ".." are resolved. Ignores query and fragment.
    bool contains(const QUrl &url) const;

    /// The address of the file @p name in the directory.
    QUrl urlOf(const QString &name) const;

private:
    QString m_path;
    QString m_canonicalPrefix;
};

} // namespace helio
