#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace programs {

/// A ZIP archive in memory (APPNOTE 6.3, without ZIP64, encryption and archives of several files).
class ZipArchive
{
public:
    /// The directory is read and compared with the members' own headers.
    explicit ZipArchive(const QByteArray &bytes);

    /// Why it cannot be read, for the user; empty if it can.
    QString problem() const { return m_problem; }
    /// In the directory's order.
    QStringList names() const;
    bool has(const QString &name) const { return m_index.contains(name); }

    /// Nothing if the member is damaged, or has more than @p limit bytes.
    std::optional<QByteArray> content(const QString &name, int limit) const;

    /// The same archive with new contents of some members. Every other byte of members, and their
    /// order, stay.
    QByteArray withContents(const QHash<QString, QByteArray> &contents) const;

private:
    struct Member
    {
        QString name;
        /// Where its entry in the directory begins, and its size.
        int entry = 0;
        int entrySize = 0;
        int method = 0;
        quint32 checksum = 0;
        int packed = 0;
        int size = 0;
        /// Its own header, its data, and where the next member or the directory begins.
        int begin = 0;
        int data = 0;
        int end = 0;
    };

    QString read();
    QString readEntry(int &position);
    QString readHeader(Member &member) const;
    void appendMember(QByteArray &archive, const Member &member, const QByteArray *content,
                      QByteArray &entry) const;

    QByteArray m_bytes;
    QString m_problem;
    QVector<Member> m_members;
    QHash<QString, int> m_index;
    int m_directory = 0;
    /// The record at the end of the archive.
    int m_end = 0;
};

} // namespace programs
