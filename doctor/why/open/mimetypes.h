#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include "doctor/model/finding.h"
#include "doctor/why/open/places.h"

namespace doctor {

/// A pattern that gives a file name a type.
struct NameMatch
{
    QString type;
    QString pattern;
    int weight = 0;
    /// The line of the compiled list of patterns.
    Place where;
};

/// The session's MIME types, as the files say that update-mime-database(1) compiles of all packages
/// in a directory "mime".
class MimeTypes
{
public:
    explicit MimeTypes(const OpenPlaces &places);

    /// The directories "mime" that count.
    const QStringList &folders() const { return m_folders; }

    /// The type that an alias stands for, or the type itself.
    QString unaliased(const QString &type) const;
    /// The type without alias, then all types that it is based on, the nearest ones first.
    QStringList withParents(const QString &type) const;
    /// The types that it is directly based on, as Qt has them: without any, text is plain text and
    /// everything else bytes.
    QStringList parents(const QString &type) const;
    bool isSubclass(const QString &type, const QString &base) const;
    /// The types of a file's name, the heaviest first. GLib is sure of the type if it is one.
    QVector<NameMatch> ofName(const QString &name) const;

private:
    void readPatterns(const QString &path, const QByteArray &content);

    QStringList m_folders;
    QHash<QString, QString> m_aliases;
    QHash<QString, QStringList> m_parents;
    struct Glob
    {
        NameMatch match;
        bool isCaseSensitive = false;
    };
    /// By the name or suffix that they are, for those that are no other pattern.
    QHash<QString, QVector<Glob>> m_names;
    QVector<QHash<QString, QVector<Glob>>> m_suffixes;
    QVector<Glob> m_patterns;
};

} // namespace doctor
