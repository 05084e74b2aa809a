#include "programs/missingfonts/ole/compoundfile.h"

#include <algorithm>

#include <QIODevice>

#include "programs/missingfonts/common/bytes.h"
#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"

namespace programs {

namespace {

constexpr std::uint32_t lastSector =
    0xFFFFFFFA; ///< higher numbers are marks, such as the end of a chain
constexpr std::size_t headerBytes = 512;
constexpr std::size_t headerFatSectors = 109;
constexpr std::size_t directoryEntryBytes = 128;
constexpr unsigned streamEntry = 2;
constexpr unsigned rootEntry = 5;

[[noreturn]] void damaged()
{
    throw DocumentError("the document's file structure is damaged");
}

} // namespace

CompoundFile::CompoundFile(QIODevice &file)
    : m_file(file), m_fileSize(static_cast<std::uint64_t>(std::max<qint64>(0, file.size())))
{
    readHeader();
}

std::uint64_t CompoundFile::size(std::string_view name) const
{
    const auto found = m_streams.find(name);
    return found == m_streams.end() ? 0 : found->second.size;
}

std::string CompoundFile::read(std::string_view name, std::uint64_t offset, std::size_t size)
{
    const auto found = m_streams.find(name);
    if (found == m_streams.end() || offset >= found->second.size)
        return {};
    const Stream &stream = found->second;
    const auto available = std::min<std::uint64_t>(size, stream.size - offset);
    return readChain(stream, stream.size < m_miniStreamLimit, offset,
                     static_cast<std::size_t>(available));
}

void CompoundFile::readHeader()
{
    const std::string header = readAt(0, headerBytes);
    const unsigned sectorShift = littleEndian16(header, 30);
    const unsigned miniSectorShift = littleEndian16(header, 32);
    if ((sectorShift != 9 && sectorShift != 12) || miniSectorShift != 6)
        damaged();
    m_sectorSize = std::uint64_t(1) << sectorShift;
    m_miniSectorSize = std::uint64_t(1) << miniSectorShift;
    m_miniStreamLimit = littleEndian32(header, 56);
    m_miniFat = {littleEndian32(header, 60), littleEndian32(header, 64) * m_sectorSize};
    for (std::size_t n = 0; n < headerFatSectors; ++n) {
        const std::uint32_t sector = littleEndian32(header, 76 + 4 * n);
        if (sector < lastSector)
            m_fatSectors.push_back(sector);
    }
    readFatSectors(littleEndian32(header, 68), littleEndian32(header, 72));
    readDirectory(littleEndian32(header, 48));
}

void CompoundFile::readFatSectors(std::uint32_t firstExtension, std::uint32_t extensions)
{
    const std::size_t entries = m_sectorSize / 4 - 1;
    std::uint32_t sector = firstExtension;
    for (std::uint32_t n = 0; n < extensions && sector < lastSector; ++n) {
        if (n >= m_fileSize / m_sectorSize)
            damaged();
        const std::string content = readSector(sector);
        for (std::size_t entry = 0; entry < entries; ++entry) {
            const std::uint32_t fatSector = littleEndian32(content, 4 * entry);
            if (fatSector < lastSector)
                m_fatSectors.push_back(fatSector);
        }
        if (m_fatSectors.size() > limits::compoundFatSectors)
            throw DocumentError("the document is too big");
        sector = littleEndian32(content, 4 * entries);
    }
}

void CompoundFile::readDirectory(std::uint32_t start)
{
    std::vector<Entry> entries;
    for (std::uint32_t sector = start; sector < lastSector; sector = nextSector(sector)) {
        if (entries.size() >= m_fileSize / directoryEntryBytes)
            damaged();
        const std::string content = readSector(sector);
        for (std::size_t at = 0; at < content.size(); at += directoryEntryBytes) {
            if (entries.size() >= limits::compoundDirectoryEntries)
                throw DocumentError("the document's file structure has too many entries");
            entries.push_back(
                directoryEntry(std::string_view(content).substr(at, directoryEntryBytes)));
        }
    }
    if (entries.empty() || entries.front().type != rootEntry)
        damaged();
    m_miniStream = entries.front().stream;
    addStreams(entries);
}

CompoundFile::Entry CompoundFile::directoryEntry(std::string_view content) const
{
    Entry entry;
    entry.name = utf8FromUtf16(content, 0, 32);
    entry.type = byteAt(content, 66);
    entry.left = littleEndian32(content, 68);
    entry.right = littleEndian32(content, 72);
    entry.child = littleEndian32(content, 76);
    entry.stream = {littleEndian32(content, 116), littleEndian32(content, 120)};
    if (m_sectorSize > 512)
        entry.stream.size |= std::uint64_t(littleEndian32(content, 124)) << 32;
    return entry;
}

/// Collects the streams of the root storage. A damaged tree may have cycles.
void CompoundFile::addStreams(const std::vector<Entry> &entries)
{
    std::vector<bool> isSeen(entries.size());
    std::vector<std::uint32_t> ahead = {entries.front().child};
    while (!ahead.empty()) {
        const std::uint32_t number = ahead.back();
        ahead.pop_back();
        if (number >= entries.size() || isSeen[number])
            continue;
        isSeen[number] = true;
        const Entry &entry = entries[number];
        if (entry.type == streamEntry)
            m_streams.emplace(entry.name, entry.stream);
        ahead.push_back(entry.left);
        ahead.push_back(entry.right);
    }
}

std::string CompoundFile::readAt(std::uint64_t offset, std::size_t size)
{
    std::string content(size, '\0');
    if (!m_file.seek(static_cast<qint64>(offset)))
        damaged();
    const qint64 read = m_file.read(content.data(), static_cast<qint64>(size));
    if (read != static_cast<qint64>(size))
        throw DocumentError("the document ends too early");
    return content;
}

std::string CompoundFile::readSector(std::uint32_t sector)
{
    return readAt((sector + std::uint64_t(1)) * m_sectorSize,
                  static_cast<std::size_t>(m_sectorSize));
}

std::uint32_t CompoundFile::nextSector(std::uint32_t sector)
{
    const std::uint64_t entriesASector = m_sectorSize / 4;
    const std::uint64_t index = sector / entriesASector;
    if (index >= m_fatSectors.size())
        damaged();
    const std::uint32_t fatSector = m_fatSectors[index];
    if (fatSector != m_cachedFatSector) {
        m_cachedFat = readSector(fatSector);
        m_cachedFatSector = fatSector;
    }
    return littleEndian32(m_cachedFat, static_cast<std::size_t>(sector % entriesASector) * 4);
}

std::uint32_t CompoundFile::nextMiniSector(std::uint32_t sector)
{
    const std::uint64_t offset = std::uint64_t(sector) * 4;
    const std::uint64_t index = offset / m_sectorSize;
    const std::uint32_t fatSector = sectorOf(m_miniFat, false, index, m_miniFatPosition);
    return littleEndian32(readSector(fatSector), static_cast<std::size_t>(offset % m_sectorSize));
}

std::uint32_t CompoundFile::sectorOf(const Stream &stream, bool isMini, std::uint64_t index,
                                     Position &position)
{
    // A chain that is longer than the file has a cycle.
    if (index >= m_fileSize / (isMini ? m_miniSectorSize : m_sectorSize))
        damaged();
    if (!position.isValid || position.start != stream.start || position.isMini != isMini ||
        position.index > index)
        position = {stream.start, 0, stream.start, isMini, true};
    while (position.index < index) {
        if (position.sector >= lastSector)
            damaged();
        position.sector = isMini ? nextMiniSector(position.sector) : nextSector(position.sector);
        ++position.index;
    }
    if (position.sector >= lastSector)
        damaged();
    return position.sector;
}

std::string CompoundFile::readChain(const Stream &stream, bool isMini, std::uint64_t offset,
                                    std::size_t size)
{
    const std::uint64_t sectorSize = isMini ? m_miniSectorSize : m_sectorSize;
    std::string result;
    while (result.size() < size) {
        const std::uint64_t index = offset / sectorSize;
        const std::uint64_t within = offset % sectorSize;
        const std::uint32_t sector = sectorOf(stream, isMini, index, m_position);
        const auto piece = static_cast<std::size_t>(
            std::min<std::uint64_t>(sectorSize - within, size - result.size()));
        std::uint64_t at = 0;
        if (isMini) {
            const std::uint64_t inMiniStream = sector * m_miniSectorSize + within;
            const std::uint32_t host =
                sectorOf(m_miniStream, false, inMiniStream / m_sectorSize, m_miniStreamPosition);
            at = (host + std::uint64_t(1)) * m_sectorSize + inMiniStream % m_sectorSize;
        } else {
            at = (sector + std::uint64_t(1)) * m_sectorSize + within;
        }
        result += readAt(at, piece);
        offset += piece;
    }
    return result;
}

} // namespace programs
