#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>

struct archive;

namespace programs {

class XmlHandler;

/// A part of a package during a pass over the package; can be read once.
class PackagePart
{
public:
    /// Takes the next block of the content; false when it has seen enough.
    using Block = std::function<bool(const char *data, std::size_t size)>;

    PackagePart(archive *source, std::string name, std::int64_t &unpacked);

    /// As relationships name it: without the leading slash, in lower case.
    const std::string &name() const { return m_name; }

    /// Passes the content on block by block.
    /// @throws DocumentError when it is damaged or too big
    void read(const Block &block);

    /// Passes the XML content on to @p handler.
    /// @throws DocumentError also when it is not well formed
    void read(XmlHandler &handler);

private:
    archive *m_source;
    std::string m_name;
    std::int64_t &m_unpacked;
};

/// How each part is read, by its name.
using PartReaders = std::unordered_map<std::string, std::function<void(PackagePart &part)>>;

/// A reader that passes the part's XML on to @p handler.
inline PartReaders::mapped_type readerFor(XmlHandler &handler)
{
    return [&handler](PackagePart &part) { part.read(handler); };
}

/// The ZIP archive that a document consists of. It is never unpacked to the disk, so the names in
/// it cannot do harm.
class ArchivePackage
{
public:
    using Wanted = std::function<bool(const std::string &name)>;
    using Visit = std::function<void(PackagePart &part)>;

    /// @p path is in the file system's encoding.
    explicit ArchivePackage(std::string path) : m_path(std::move(path)) {}

    /// Makes one pass over the package, in its order, and visits the parts that are wanted.
    /// @throws DocumentError when the package is damaged, or is not a package
    void visit(const Wanted &wanted, const Visit &visit);

    /// The same for the parts that have a reader; a part without a name is never met.
    void read(const PartReaders &readers);

private:
    std::string m_path;
    std::int64_t m_unpacked = 0;
};

} // namespace programs
