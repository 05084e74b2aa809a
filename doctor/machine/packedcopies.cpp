#include "doctor/machine/packedcopies.h"

#include <QtEndian>

#include <algorithm>

namespace doctor {

namespace {

// LibreOffice's comphelper/source/misc/backupfilehelper.cxx: "PACK", the number of copies, and for
// each its size, its sum and its packed size; then the packed bytes. Numbers are big-endian.
constexpr char mark[] = "PACK";
constexpr int numberSize = 4;
constexpr int headSize = 2 * numberSize;
constexpr int entrySize = 3 * numberSize;
constexpr quint32 mostCopies = 100;

quint32 numberAt(const QByteArray &pack, int position)
{
    return qFromBigEndian<quint32>(pack.constData() + position);
}

} // namespace

QVector<QByteArray> packedCopies(const QByteArray &pack, int largest)
{
    QVector<QByteArray> copies;
    if (!pack.startsWith(mark) || pack.size() < headSize)
        return copies;
    const quint32 count = std::min(numberAt(pack, numberSize), mostCopies);
    qint64 position = headSize + qint64(count) * entrySize;
    for (quint32 i = 0; i < count && position <= pack.size(); ++i) {
        const int entry = headSize + static_cast<int>(i) * entrySize;
        const quint32 size = numberAt(pack, entry);
        const quint32 packed = numberAt(pack, entry + 2 * numberSize);
        const bool isWhole =
            size <= static_cast<quint32>(largest) && position + packed <= pack.size();
        // qUncompress() wants the size in front, and does not trust it.
        const QByteArray copy =
            isWhole ? qUncompress(pack.mid(entry, numberSize) +
                                  pack.mid(static_cast<int>(position), static_cast<int>(packed)))
                    : QByteArray();
        if (isWhole && copy.size() == static_cast<int>(size) && !copy.isEmpty())
            copies.prepend(copy);
        position += packed;
    }
    return copies;
}

} // namespace doctor
