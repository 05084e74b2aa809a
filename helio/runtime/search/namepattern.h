#pragma once

#include <QByteArray>
#include <QString>

namespace helio {

/// A keyword, taken as plain text, that a file name is to contain.
class NamePattern
{
public:
    NamePattern(const QString &keyword, Qt::CaseSensitivity caseSensitivity);

    /// Whether any file name can contain the keyword: none contains a slash, and none is as long
    /// as some keywords.
    bool canMatch() const;

    /// Whether the keyword occurs in the last component of a path.
    bool matches(const QByteArray &fileName) const;

    /// The keyword as a glob pattern that matches the same names.
    QByteArray toGlob() const;

    Qt::CaseSensitivity caseSensitivity() const;

private:
    QString m_keyword;
    Qt::CaseSensitivity m_caseSensitivity;
};

} // namespace helio
