#pragma once

#include <vector>

#include <QByteArray>
#include <QMap>
#include <QString>

namespace testsupport {

/// Writes documents that are packages of parts, part by part.
class PackageBuilder
{
public:
    /// Adds a part as it is.
    void add(const QString &name, const QByteArray &content);

    /// Adds a part that begins with the XML declaration and whose root element @p content is. In it
    /// the prefixes w, a, s, p, c, m, mc and r may stand without being declared.
    void addXml(const QString &name, const QByteArray &content);

    /// Adds a relationship of the last step of a type's address, such as "styles". An empty source
    /// is the package itself.
    void relate(const QString &source, const QString &type, const QString &target);

    /// Writes the package, relationships included; fails the program when that does not work.
    void write(const QString &path) const;

private:
    struct Part
    {
        QString name;
        QByteArray content;
    };

    std::vector<Part> m_parts;
    QMap<QString, QByteArray> m_relationships;
};

} // namespace testsupport
