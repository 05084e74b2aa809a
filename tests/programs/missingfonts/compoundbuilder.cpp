#include "tests/programs/missingfonts/compoundbuilder.h"

#include <algorithm>

namespace testsupport {

namespace {

constexpr quint32 endOfChain = 0xFFFFFFFE;
constexpr quint32 fatMark = 0xFFFFFFFD;
constexpr quint32 freeSector = 0xFFFFFFFF;
constexpr quint32 noEntry = 0xFFFFFFFF;
constexpr char storageEntry = 1;
constexpr char streamEntry = 2;
constexpr char rootEntry = 5;
constexpr int sectorSize = 512;
constexpr int miniSectorSize = 64;
constexpr int miniStreamLimit = 4096;

QByteArray number(quint32 value, int bytes = 4)
{
    QByteArray result;
    for (int n = 0; n < bytes; ++n)
        result.append(char(value >> (8 * n)));
    return result;
}

/// Numbered pieces of one size, and for each the number of the next of its chain.
struct Sectors
{
    int size;
    QByteArray content;
    std::vector<quint32> next;

    /// Gives the number of the first piece.
    quint32 append(QByteArray stream)
    {
        if (stream.isEmpty())
            return endOfChain;
        stream.append(QByteArray((size - stream.size() % size) % size, '\0'));
        const auto first = quint32(next.size());
        const int count = stream.size() / size;
        for (int n = 0; n < count; ++n)
            next.push_back(n + 1 < count ? quint32(next.size()) + 1 : endOfChain);
        content += stream;
        return first;
    }

    QByteArray table() const
    {
        QByteArray result;
        for (const quint32 sector : next)
            result += number(sector);
        while (result.size() % sectorSize != 0)
            result += number(freeSector);
        return result;
    }
};

/// An entry of the directory. Those of one storage are a chain, which the storage begins.
struct Entry
{
    QString name;
    char type;
    quint32 start = 0;
    quint32 size = 0;
    quint32 next = noEntry;
    quint32 child = noEntry;

    QByteArray bytes() const
    {
        QByteArray entry;
        for (const QChar c : name)
            entry += number(c.unicode(), 2);
        const auto nameBytes = quint32(entry.size() + 2);
        entry.append(QByteArray(64 - entry.size(), '\0'));
        entry += number(nameBytes, 2) + type + '\1' + number(noEntry) + number(next) +
                 number(child) + QByteArray(36, '\0') + number(start) + number(size) + number(0);
        return entry;
    }
};

class Directory
{
public:
    quint32 add(quint32 storage, Entry entry)
    {
        const auto added = quint32(m_entries.size());
        entry.next = m_entries[storage].child;
        m_entries[storage].child = added;
        m_entries.push_back(entry);
        return added;
    }

    /// The number of the storage, which is made when it is not there.
    quint32 storage(const QString &name)
    {
        for (std::size_t n = 0; n < m_entries.size(); ++n) {
            if (m_entries[n].type == storageEntry && m_entries[n].name == name)
                return quint32(n);
        }
        return add(0, {name, storageEntry});
    }

    QByteArray bytes(quint32 miniStream, quint32 miniStreamSize)
    {
        m_entries.front().start = miniStream;
        m_entries.front().size = miniStreamSize;
        QByteArray result;
        for (const Entry &entry : m_entries)
            result += entry.bytes();
        return result;
    }

private:
    std::vector<Entry> m_entries = {{QStringLiteral("Root Entry"), rootEntry}};
};

} // namespace

QByteArray compoundFile(const CompoundStreams &streams)
{
    Sectors sectors = {sectorSize, {}, {}};
    // The table of the sectors comes first; one sector of it serves 128, which tests keep to
    // by the four that are reserved.
    constexpr int fatSectors = 4;
    sectors.append(QByteArray(fatSectors * sectorSize, '\0'));
    std::fill(sectors.next.begin(), sectors.next.end(), fatMark);

    Sectors small = {miniSectorSize, {}, {}};
    Directory entries;
    for (const auto &[name, content] : streams) {
        const bool isSmall = content.size() < miniStreamLimit;
        const quint32 start = (isSmall ? small : sectors).append(content);
        const int slash = name.indexOf(QLatin1Char('/'));
        entries.add(slash < 0 ? 0 : entries.storage(name.left(slash)),
                    {name.mid(slash + 1), streamEntry, start, quint32(content.size())});
    }
    const quint32 miniStream = sectors.append(small.content);
    const QByteArray miniTable = small.table();
    const quint32 miniFat = sectors.append(miniTable);
    const quint32 directory =
        sectors.append(entries.bytes(miniStream, quint32(small.content.size())));

    const QByteArray fat = sectors.table();
    if (fat.size() > fatSectors * sectorSize)
        qFatal("the streams are too big for this builder");
    sectors.content.replace(0, fat.size(), fat);

    QByteArray header = QByteArray::fromHex("d0cf11e0a1b11ae1") + QByteArray(16, '\0') +
                        number(0x3E, 2) + number(3, 2) + number(0xFFFE, 2) + number(9, 2) +
                        number(6, 2) + QByteArray(10, '\0') + number(fatSectors) +
                        number(directory) + number(0) + number(miniStreamLimit) + number(miniFat) +
                        number(quint32(miniTable.size() / sectorSize)) + number(endOfChain) +
                        number(0);
    for (quint32 n = 0; n < 109; ++n)
        header += number(n < fatSectors ? n : freeSector);
    return header + sectors.content;
}

} // namespace testsupport
