#pragma once

#include <string_view>

#include "programs/missingfonts/ooxml/sheet/sheetfont.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Reads a spreadsheet's text that may use several fonts.
class RichText
{
public:
    RichText(FontUsage &usage, SheetFonts &used) : m_usage(usage), m_used(used) {}

    /// A text begins.
    void begin()
    {
        m_font = SheetFont();
        m_inText = false;
        m_usesCellFont = false;
    }

    /// True when some of it is in the font of the cell.
    bool usesCellFont() const { return m_usesCellFont; }

    /// False for what is not shown (readings of East Asian characters).
    bool startElement(const XmlElement &element)
    {
        if (element.tag() == sheetTag("r"))
            m_font = SheetFont();
        else if (element.tag() == sheetTag("rFont"))
            m_font.family = m_usage.family(element.attribute(Vocabulary::None, "val"));
        else if (element.tag() == sheetTag("scheme"))
            m_font.scheme = sheetFontScheme(element.attribute(Vocabulary::None, "val"));
        else if (element.tag() == sheetTag("t"))
            m_inText = true;
        return element.tag() != sheetTag("rPh");
    }

    void endElement(Tag tag)
    {
        if (tag == sheetTag("t"))
            m_inText = false;
    }

    void text(std::string_view text)
    {
        if (!m_inText || text.empty())
            return;
        if (m_font.family == noFamily)
            m_usesCellFont = true;
        else
            m_used.insert(m_font);
    }

private:
    FontUsage &m_usage;
    SheetFonts &m_used;
    SheetFont m_font;
    bool m_inText = false;
    bool m_usesCellFont = false;
};

} // namespace programs
