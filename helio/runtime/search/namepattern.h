#pragma once

#include <QByteArray>
#include <QString>

namespace helio {

/// Matches file names that contain a keyword, which is plain text.
class NamePattern
{
public:
    NamePattern(const QString &keyword, Qt::CaseSensitivity caseSensitivity);

    /// Whether any file name can match: not if the keyword is empty, too long, or contains a slash
    /// or a null character.
    bool canMatch() const;

    /// @p fileName is the last component of a path.
    bool matches(const QByteArray &fileName) const;

    /// The keyword as a glob pattern that matches the same names.
    QByteArray toGlob() const;

    Qt::CaseSensitivity caseSensitivity() const;

private:
    QString m_keyword;
    Qt::CaseSensitivity m_caseSensitivity;
};

} // namespace helio
