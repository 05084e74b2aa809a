#include "programs/missingfonts/ole/oledocument.h"

#include <algorithm>

#include <QString>

#include "programs/missingfonts/common/bytes.h"
#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ole/compoundfile.h"

namespace programs {

namespace {

constexpr std::string_view textStream = "WordDocument";
constexpr std::string_view sheetStream = "Workbook";
constexpr std::string_view oldSheetStream = "Book";
constexpr std::string_view presentationStream = "PowerPoint Document";
constexpr std::string_view encryptedStream = "EncryptedPackage";

/// A longer table of fonts is taken for damage.
constexpr std::uint32_t fontTableBytes = 4U << 20;

[[noreturn]] void encrypted()
{
    throw DocumentError("the document is encrypted");
}

void checkRecordCount(std::size_t count)
{
    if (count > limits::oleRecords)
        throw DocumentError("the document has too many records");
}

/// One entry of a text document's table, without its length byte.
void readFontEntry(std::string_view entry, FontUsage &usage)
{
    constexpr std::size_t nameOffset = 39;
    const Family family = usage.family(utf8FromUtf16(entry, nameOffset, entry.size()));
    usage.use(family);
    const std::size_t alternativeIndex = byteAt(entry, 4);
    if (alternativeIndex != 0)
        usage.setAlternative(family,
                             utf8FromUtf16(entry, nameOffset + 2 * alternativeIndex, entry.size()));
}

namespace sheet {
constexpr unsigned font = 0x0031;
constexpr unsigned encryption = 0x002F;
constexpr unsigned beginning = 0x0809;
constexpr unsigned version8 = 0x0600;
} // namespace sheet

/// A font record's text: its length in characters, whether they take two bytes, the characters.
std::string sheetFontName(std::string_view record)
{
    constexpr std::size_t lengthOffset = 14;
    const std::size_t size = byteAt(record, lengthOffset);
    if ((byteAt(record, lengthOffset + 1) & 1U) != 0)
        return utf8FromUtf16(record, lengthOffset + 2, size);
    const std::string_view narrow =
        record.size() > lengthOffset + 2 ? record.substr(lengthOffset + 2, size) : "";
    return QString::fromLatin1(narrow.data(), static_cast<int>(narrow.size())).toStdString();
}

namespace presentation {
constexpr unsigned document = 1000;
constexpr unsigned environment = 1010;
constexpr unsigned fontCollection = 2005;
constexpr unsigned fontEntity = 4023;
constexpr unsigned embeddedFont = 4024;
constexpr unsigned encryption = 12052;
constexpr std::size_t faceNameCharacters = 32;
} // namespace presentation

/// The table of fonts of a text document (.doc).
void readTextFontTable(CompoundFile &file, FontUsage &usage)
{
    constexpr std::size_t tablePlace = 0x112;
    const std::string header = file.read(textStream, 0, tablePlace + 8);
    const unsigned flags = littleEndian16(header, 10);
    if (littleEndian16(header, 0) != 0xA5EC || header.size() < tablePlace + 8)
        throw DocumentError("the document is older than the formats that can be read");
    if ((flags & 0x0100U) != 0)
        encrypted();
    const std::string_view tableStream = (flags & 0x0200U) != 0 ? "1Table" : "0Table";
    const std::uint32_t offset = littleEndian32(header, tablePlace);
    const std::uint32_t size = littleEndian32(header, tablePlace + 4);
    if (size > fontTableBytes)
        throw DocumentError("the document's table of fonts is too long");
    const std::string table = file.read(tableStream, offset, size);
    if (table.size() < size || size < 4)
        throw DocumentError("the document ends too early");
    std::size_t at = 4;
    for (unsigned count = littleEndian16(table, 0); count > 0 && at < table.size(); --count) {
        const std::size_t entryBytes = byteAt(table, at);
        readFontEntry(std::string_view(table).substr(at + 1, entryBytes), usage);
        at += 1 + entryBytes;
    }
}

/// The font records of a workbook (.xls).
void readSheetFontRecords(CompoundFile &file, FontUsage &usage)
{
    const std::uint64_t size = file.size(sheetStream);
    std::uint64_t at = 0;
    for (std::size_t count = 0; at + 4 <= size; ++count) {
        checkRecordCount(count);
        const std::string head = file.read(sheetStream, at, 4);
        const unsigned type = littleEndian16(head, 0);
        const std::size_t length = littleEndian16(head, 2);
        at += 4;
        if (at + length > size)
            throw DocumentError("the document ends too early");
        if (count == 0) {
            if (type != sheet::beginning ||
                littleEndian16(file.read(sheetStream, at, 2), 0) != sheet::version8)
                throw DocumentError("the workbook is older than the formats that can be read");
        } else if (type == sheet::encryption) {
            encrypted();
        } else if (type == sheet::beginning) {
            return; // the first sheet: the records of the whole workbook have ended
        } else if (type == sheet::font) {
            const Family family = usage.family(sheetFontName(file.read(sheetStream, at, length)));
            usage.use(family);
        }
        at += length;
    }
}

/// The font collection of a presentation (.ppt), without the fonts that are embedded in it.
void readPresentationFonts(CompoundFile &file, FontUsage &usage)
{
    const std::uint64_t size = file.size(presentationStream);
    Family last = noFamily;
    std::uint64_t at = 0;
    for (std::size_t count = 0; at + 8 <= size; ++count) {
        checkRecordCount(count);
        const std::string head = file.read(presentationStream, at, 8);
        const unsigned type = littleEndian16(head, 2);
        const std::uint32_t length = littleEndian32(head, 4);
        at += 8;
        if (length > size - at)
            throw DocumentError("the document ends too early");
        switch (type) {
        case presentation::document:
        case presentation::environment:
        case presentation::fontCollection:
            continue; // a container: its content follows
        case presentation::encryption:
            encrypted();
        case presentation::fontEntity:
            last = usage.family(
                utf8FromUtf16(file.read(presentationStream, at, std::min<std::size_t>(length, 64)),
                              0, presentation::faceNameCharacters));
            usage.use(last);
            break;
        case presentation::embeddedFont:
            usage.setEmbedded(last);
            break;
        default:
            break;
        }
        at += length;
    }
}

} // namespace

void readOleDocument(QIODevice &file, FontUsage &usage)
{
    CompoundFile compound(file);
    if (compound.contains(encryptedStream))
        encrypted();
    if (compound.contains(textStream))
        readTextFontTable(compound, usage);
    else if (compound.contains(sheetStream))
        readSheetFontRecords(compound, usage);
    else if (compound.contains(presentationStream))
        readPresentationFonts(compound, usage);
    else if (compound.contains(oldSheetStream))
        throw DocumentError("the workbook is older than the formats that can be read");
    else
        throw DocumentError("the document is of a format that cannot be read");
}

} // namespace programs
