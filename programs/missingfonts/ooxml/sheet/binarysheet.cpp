#include "programs/missingfonts/ooxml/sheet/binarysheet.h"

#include <algorithm>

#include "programs/missingfonts/common/bytes.h"
#include "programs/missingfonts/ooxml/sheet/binaryrecords.h"
#include "programs/missingfonts/ooxml/sheet/workbook.h"
#include "programs/missingfonts/package/archivepackage.h"

namespace programs {

namespace {

/// A record type as the file writes it: two bytes of which the first has its top bit set.
constexpr std::uint32_t fileType(std::uint32_t number)
{
    return number < 0x80 ? number : ((number & 0x7FU) | 0x80U) | ((number >> 7U) << 8U);
}

/// Column and format, which begin the record of a cell.
constexpr std::size_t cellBytes = 8;

constexpr std::uint32_t cellRk = 2;
constexpr std::uint32_t cellFormulaError = 11;
constexpr std::uint32_t cellSharedText = 7;
constexpr std::uint32_t sharedText = 19;
constexpr std::uint32_t font = 43;
constexpr std::uint32_t format = 47;
constexpr std::uint32_t cellRichText = 62;
constexpr std::uint32_t pageHeadings = fileType(479);
constexpr std::uint32_t beginCellFormats = fileType(617);
constexpr std::uint32_t endCellFormats = fileType(618);
constexpr std::uint32_t commentText = fileType(637);

/// Reads the records of one part.
class BinarySheet
{
public:
    explicit BinarySheet(Workbook &workbook) : m_workbook(workbook) {}

    void take(std::uint32_t type, std::string_view content)
    {
        if (type >= cellRk && type <= cellFormulaError)
            takeCell(type, content);
        else if (type == font)
            takeFont(content);
        else if (type == beginCellFormats || type == endCellFormats)
            m_inCellFormats = type == beginCellFormats;
        else if (type == format && m_inCellFormats)
            m_workbook.styles.addFormat(littleEndian16(content, 4));
        else if (type == sharedText)
            m_workbook.strings.add(takeRichText(content));
        else if (type == cellRichText &&
                 takeRichText(content.substr(std::min(cellBytes, content.size()))))
            m_workbook.useFormat(cellFormat(content));
        else if (type == commentText && takeRichText(content))
            m_workbook.useFormat(0);
        else if (type == pageHeadings)
            takePageHeadings(content);
    }

private:
    static std::size_t cellFormat(std::string_view content)
    {
        return littleEndian32(content, 4) & 0xFFFFFFU;
    }

    void takeCell(std::uint32_t type, std::string_view content)
    {
        if (type != cellSharedText ||
            m_workbook.strings.usesCellFont(littleEndian32(content, cellBytes)))
            m_workbook.useFormat(cellFormat(content));
    }

    void takeFont(std::string_view content)
    {
        constexpr std::size_t schemeOffset = 20;
        SheetFont read;
        const unsigned scheme = byteAt(content, schemeOffset);
        if (scheme == 1 || scheme == 2)
            read.scheme = scheme == 1 ? SheetFont::Scheme::Major : SheetFont::Scheme::Minor;
        const std::size_t size =
            std::min<std::size_t>(littleEndian32(content, schemeOffset + 1), 256);
        read.family = m_workbook.usage.family(utf8FromUtf16(content, schemeOffset + 5, size));
        m_workbook.styles.addFont(read);
    }

    /// True when some of the text is in the font of the cell.
    bool takeRichText(std::string_view content)
    {
        const std::uint32_t size = littleEndian32(content, 1);
        if (size == 0)
            return false;
        const bool isRich = (byteAt(content, 0) & 1U) != 0;
        if (!isRich)
            return true;
        const std::size_t runsAt = 5 + std::size_t(size) * 2;
        const std::uint32_t runs = littleEndian32(content, runsAt);
        const bool usesCellFont = runs == 0 || littleEndian16(content, runsAt + 4) > 0;
        for (std::size_t at = runsAt + 4, n = 0; n < runs && at + 4 <= content.size(); at += 4, ++n)
            m_workbook.usedFontNumbers.insert(littleEndian16(content, at + 2));
        return usesCellFont;
    }

    /// Header and footer of odd, even and first pages.
    void takePageHeadings(std::string_view content)
    {
        constexpr int count = 6;
        constexpr std::uint32_t none = 0xFFFFFFFF;
        std::size_t at = 2;
        for (int n = 0; n < count; ++n) {
            const std::uint32_t size = littleEndian32(content, at);
            at += 4;
            if (size == none)
                continue;
            m_workbook.useHeading(utf8FromUtf16(content, at, size));
            at += std::size_t(size) * 2;
        }
    }

    Workbook &m_workbook;
    bool m_inCellFormats = false;
};

} // namespace

void readBinarySheetPart(PackagePart &part, Workbook &workbook)
{
    BinarySheet sheet(workbook);
    BinaryRecords records(
        [&sheet](std::uint32_t type, std::string_view content) { sheet.take(type, content); });
    part.read([&records](const char *data, std::size_t size) {
        records.feed(data, size);
        return true;
    });
    records.finish();
}

} // namespace programs
