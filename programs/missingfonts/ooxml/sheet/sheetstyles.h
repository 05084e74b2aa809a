#pragma once

#include <cstdint>
#include <vector>

#include "programs/missingfonts/ooxml/sheet/sheetfont.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// The fonts of a workbook's cell formats, read from its styles part.
class SheetStyles : public XmlHandler
{
public:
    explicit SheetStyles(FontUsage &usage) : m_usage(usage) {}

    /// The font of the cells of that format; no font for a format that is not there.
    SheetFont font(std::size_t format) const;

    /// The font of that number in the table of fonts.
    SheetFont fontByNumber(std::size_t number) const;

    /// For readers of the binary form.
    void addFont(const SheetFont &font);
    void addFormat(std::uint32_t font);

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    FontUsage &m_usage;
    std::vector<SheetFont> m_fonts;
    std::vector<std::uint32_t> m_formats;
    bool m_inFonts = false;
    bool m_inFormats = false;
};

} // namespace standin
