#pragma once

#include <QString>
#include <QVector>

#include <optional>

#include "doctor/journal/record.h"
#include "doctor/model/descriptor.h"

namespace doctor {

/// The journal's directory: one directory a repair, named by its number, with the file "record" and
/// the contents before and after, each named by its SHA-256.
class Store
{
public:
    /// Nothing is made before makeDirectory().
    explicit Store(const QString &path);

    Problem makeDirectory();
    /// False without a problem: there is no journal yet.
    bool open(Problem &problem);
    /// Keeps other doctors away until this object goes.
    Problem lock();

    /// In ascending order.
    QVector<int> numbers() const;
    /// Without the bytes of contents; nothing for a repair that was never begun.
    std::optional<Record> read(int number) const;
    Problem load(int number, Action &action) const;
    QString contentPath(int number, const Content &content) const;
    qint64 size(int number) const;

    /// Writes the contents and the intention to the disk. A record without a number gets the next
    /// one.
    Problem begin(Record &record, const Action &action);
    /// Adds a line to the record.
    Problem add(int number, const QByteArray &line);
    Problem remove(int number);

private:
    Problem writeBegin(const Descriptor &entry, const Record &record, const Action &action);
    Problem problemOf(int error) const;
    Descriptor openEntry(int number) const;

    QString m_path;
    Descriptor m_directory;
    Descriptor m_lock;
};

} // namespace doctor
