#pragma once

#include "tests/doctor/editors/generated.h"

#include <QVector>

namespace generated {

/// A file of sections as pieces, so that what must not change is known.
struct SectionFile
{
    struct Entry
    {
        QString section;
        QString key;
        /// Comments and headers before the line.
        QByteArray lead;
        QByteArray before;
        QByteArray value;
        QByteArray after;
        /// A comment behind the value.
        bool hasComment = false;
    };

    QByteArray start;
    QVector<Entry> entries;

    /// The pieces from one entry up to another.
    QByteArray bytes(int from, int to) const
    {
        QByteArray result;
        for (int i = from; i < to; ++i)
            result += entries.at(i).lead + entries.at(i).before + entries.at(i).value +
                      entries.at(i).after;
        return result;
    }
    QByteArray all() const { return start + bytes(0, entries.size()); }
    int lastOf(const QString &section, const QString &key) const
    {
        for (int i = entries.size() - 1; i >= 0; --i) {
            if (entries.at(i).section == section && entries.at(i).key == key)
                return i;
        }
        return -1;
    }
    /// True if content is the file with another value of one entry.
    bool keepsAllBut(int entry, const QByteArray &content) const
    {
        const Entry &changed = entries.at(entry);
        return isBetween(content, start + bytes(0, entry) + changed.lead + changed.before,
                         changed.after + bytes(entry + 1, entries.size()));
    }
    QByteArray without(const QString &section, const QString &key) const
    {
        QByteArray result = start;
        for (int i = 0; i < entries.size(); ++i) {
            const Entry &entry = entries.at(i);
            if (entry.section != section || entry.key != key)
                result += bytes(i, i + 1);
            else
                result += entry.lead + (entry.hasComment ? entry.after.mid(1) : QByteArray());
        }
        return result;
    }
};

} // namespace generated
