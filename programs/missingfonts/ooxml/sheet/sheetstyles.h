#pragma once

#include <cstdint>
#include <vector>

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/ooxml/sheet/sheetfont.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// The fonts of a workbook's cell formats, read from its styles part.
class SheetStyles : public XmlHandler
{
public:
    explicit SheetStyles(FontUsage &usage) : m_usage(usage) {}

    /// The font of the cells of that format; none for an unknown format.
    SheetFont font(std::size_t format) const
    {
        return format < m_formats.size() ? fontByNumber(m_formats[format]) : SheetFont();
    }

    /// The font of that number in the table of fonts.
    SheetFont fontByNumber(std::size_t number) const
    {
        return number < m_fonts.size() ? m_fonts[number] : SheetFont();
    }

    /// For readers of the binary form.
    void addFont(const SheetFont &font)
    {
        if (m_fonts.size() >= limits::cellFormats)
            throw DocumentError("the workbook has too many fonts");
        m_fonts.push_back(font);
    }

    /// For readers of the binary form.
    void addFormat(std::uint32_t font)
    {
        if (m_formats.size() >= limits::cellFormats)
            throw DocumentError("the workbook has too many cell formats");
        m_formats.push_back(font);
    }

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() == sheetTag("fonts"))
            m_inFonts = true;
        else if (element.tag() == sheetTag("cellXfs"))
            m_inFormats = true;
        else if (element.tag() == sheetTag("xf") && m_inFormats)
            addFormat(static_cast<std::uint32_t>(element.number(Vocabulary::None, "fontId", 0)));
        else if (element.tag() == sheetTag("font") && m_inFonts)
            addFont({});
        else if (m_inFonts && !m_fonts.empty())
            readFont(element, m_fonts.back());
        return true;
    }

    void endElement(Tag tag) override
    {
        if (tag == sheetTag("fonts"))
            m_inFonts = false;
        else if (tag == sheetTag("cellXfs"))
            m_inFormats = false;
    }

private:
    void readFont(const XmlElement &element, SheetFont &font)
    {
        if (element.tag() == sheetTag("name"))
            font.family = m_usage.family(element.attribute(Vocabulary::None, "val"));
        else if (element.tag() == sheetTag("scheme"))
            font.scheme = sheetFontScheme(element.attribute(Vocabulary::None, "val"));
    }

    FontUsage &m_usage;
    std::vector<SheetFont> m_fonts;
    std::vector<std::uint32_t> m_formats;
    bool m_inFonts = false;
    bool m_inFormats = false;
};

} // namespace programs
