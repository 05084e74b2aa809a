#include "programs/missingfonts/package/archivepackage.h"

#include <memory>
#include <unordered_set>

#include <archive.h>
#include <archive_entry.h>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/package/partname.h"
#include "programs/missingfonts/xml/xmlscanner.h"

namespace programs {

namespace {

constexpr std::size_t readBlockBytes = 65536;

struct ArchiveCloser
{
    void operator()(archive *opened) const { archive_read_free(opened); }
};
using ArchivePointer = std::unique_ptr<archive, ArchiveCloser>;

[[noreturn]] void damaged(archive *source)
{
    const char *reason = archive_error_string(source);
    throw DocumentError(std::string("the document's package is damaged: ") +
                        (reason ? reason : "unknown error"));
}

ArchivePointer openArchive(const std::string &path)
{
    ArchivePointer opened(archive_read_new());
    if (!opened)
        throw DocumentError("there is not enough memory");
    // With the directory at its end, which a truncated package lacks.
    if (archive_read_support_format_zip_seekable(opened.get()) != ARCHIVE_OK ||
        archive_read_open_filename(opened.get(), path.c_str(), readBlockBytes) != ARCHIVE_OK)
        damaged(opened.get());
    return opened;
}

/// Other methods need memory that the package itself chooses, and documents do not use them.
void checkMethod(archive *source, archive_entry *entry)
{
    if (archive_entry_is_encrypted(entry) != 0)
        throw DocumentError("the document is encrypted");
    const char *format = archive_format_name(source);
    const std::string_view method = format ? format : "";
    if (method.find("(deflation)") == std::string_view::npos &&
        method.find("(uncompressed)") == std::string_view::npos)
        throw DocumentError("the document's package uses an unusual compression");
}

} // namespace

PackagePart::PackagePart(archive *source, std::string name, std::int64_t &unpacked)
    : m_source(source), m_name(std::move(name)), m_unpacked(unpacked)
{
}

void PackagePart::read(const Block &block)
{
    while (true) {
        const void *data = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        const int status = archive_read_data_block(m_source, &data, &size, &offset);
        if (status == ARCHIVE_EOF)
            return;
        // A wrong checksum is a warning only.
        if (status != ARCHIVE_OK)
            damaged(m_source);
        m_unpacked += static_cast<std::int64_t>(size);
        if (m_unpacked > limits::unpackedBytes)
            throw DocumentError("the document is too big when it is unpacked");
        if (!block(static_cast<const char *>(data), size))
            return;
    }
}

void PackagePart::read(XmlHandler &handler)
{
    XmlScanner scanner(handler);
    read([&scanner](const char *data, std::size_t size) {
        scanner.feed(data, size);
        return true;
    });
    scanner.finish();
}

void ArchivePackage::visit(const Wanted &wanted, const Visit &visit)
{
    const ArchivePointer source = openArchive(m_path);
    std::unordered_set<std::string> visited;
    archive_entry *entry = nullptr;
    for (int count = 0;; ++count) {
        const int status = archive_read_next_header(source.get(), &entry);
        if (status == ARCHIVE_EOF)
            return;
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            damaged(source.get());
        if (count == limits::packageEntries)
            throw DocumentError("the document's package has too many parts");
        const char *path = archive_entry_pathname(entry);
        if (!path)
            continue;
        const std::string name = partName(path);
        if (name.empty() || !wanted(name))
            continue;
        // The entry and the package's directory contradict each other.
        if (status == ARCHIVE_WARN)
            damaged(source.get());
        checkMethod(source.get(), entry);
        if (archive_entry_size_is_set(entry) && archive_entry_size(entry) > limits::unpackedBytes)
            throw DocumentError("the document is too big when it is unpacked");
        if (!visited.insert(name).second)
            throw DocumentError("the document's package has a part twice");
        PackagePart part(source.get(), name, m_unpacked);
        visit(part);
    }
}

void ArchivePackage::read(const PartReaders &readers)
{
    visit([&](const std::string &name) { return readers.count(name) != 0; },
          [&](PackagePart &part) { readers.at(part.name())(part); });
}

} // namespace programs
