#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class QIODevice;

namespace programs {

/// The file system inside a file that the older document formats keep their streams in (OLE2).
/// Reads only the requested bytes of a stream. Embedded documents have storages of their own, which
/// are ignored.
class CompoundFile
{
public:
    /// @throws DocumentError when the file is damaged
    explicit CompoundFile(QIODevice &file);

    /// True when the root storage has a stream of that name.
    bool contains(std::string_view name) const { return m_streams.find(name) != m_streams.end(); }

    /// The size of a stream; zero for an unknown stream.
    std::uint64_t size(std::string_view name) const;

    /// Up to @p size bytes from @p offset of a stream; fewer at its end.
    /// @throws DocumentError when the chain of its sectors is damaged
    std::string read(std::string_view name, std::uint64_t offset, std::size_t size);

private:
    struct Stream
    {
        std::uint32_t start = 0;
        std::uint64_t size = 0;
    };

    /// An entry of the directory. The entries of a storage form a tree; the storage names its root.
    struct Entry
    {
        std::string name;
        unsigned type = 0;
        std::uint32_t left = 0;
        std::uint32_t right = 0;
        std::uint32_t child = 0;
        Stream stream;
    };

    /// The last position in a chain of sectors: reading nearly always goes on from there.
    struct Position
    {
        std::uint32_t start = 0;
        std::uint64_t index = 0;
        std::uint32_t sector = 0;
        bool isMini = false;
        bool isValid = false;
    };

    void readHeader();
    void readFatSectors(std::uint32_t firstExtension, std::uint32_t extensions);
    void readDirectory(std::uint32_t start);
    Entry directoryEntry(std::string_view content) const;
    void addStreams(const std::vector<Entry> &entries);
    std::string readAt(std::uint64_t offset, std::size_t size);
    std::string readSector(std::uint32_t sector);
    std::uint32_t nextSector(std::uint32_t sector);
    std::uint32_t nextMiniSector(std::uint32_t sector);
    std::uint32_t sectorOf(const Stream &stream, bool isMini, std::uint64_t index,
                           Position &position);
    std::string readChain(const Stream &stream, bool isMini, std::uint64_t offset,
                          std::size_t size);

    QIODevice &m_file;
    std::uint64_t m_fileSize;
    std::uint64_t m_sectorSize = 512;
    std::uint64_t m_miniSectorSize = 64;
    std::uint64_t m_miniStreamLimit = 4096;
    std::vector<std::uint32_t> m_fatSectors;
    std::uint32_t m_cachedFatSector = 0xFFFFFFFF;
    std::string m_cachedFat;
    Stream m_miniFat;
    Stream m_miniStream;
    std::map<std::string, Stream, std::less<>> m_streams;
    Position m_position;
    Position m_miniFatPosition;
    Position m_miniStreamPosition;
};

} // namespace programs
