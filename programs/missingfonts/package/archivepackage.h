#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct archive;

namespace standin {

class XmlHandler;

/// A part of a package while the package is gone through; can be read once.
class PackagePart
{
public:
    /// Takes the next block of the content; false when it has seen enough.
    using Block = std::function<bool(const char *data, std::size_t size)>;

    PackagePart(archive *source, std::string name, std::int64_t &unpacked);

    /// As relationships name it: without the leading slash, in lower case.
    const std::string &name() const { return m_name; }

    /// Hands the content over block by block.
    /// @throws DocumentError when it is damaged or too big
    void read(const Block &block);

    /// Hands the XML content over to @p handler.
    /// @throws DocumentError also when it is not well formed
    void read(XmlHandler &handler);

private:
    archive *m_source;
    std::string m_name;
    std::int64_t &m_unpacked;
};

/// The ZIP archive that a document consists of. Nothing of it is ever written to a disk, so the
/// names in it are names only.
class ArchivePackage
{
public:
    using Wanted = std::function<bool(const std::string &name)>;
    using Visit = std::function<void(PackagePart &part)>;

    /// @p path is in the file system's encoding.
    explicit ArchivePackage(std::string path) : m_path(std::move(path)) {}

    /// Goes through the package once, in its order, and visits the parts that are wanted.
    /// @throws DocumentError when the package is damaged, or is no package
    void visit(const Wanted &wanted, const Visit &visit);

private:
    std::string m_path;
    std::int64_t m_unpacked = 0;
};

} // namespace standin
