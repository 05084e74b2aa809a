#pragma once

#include <string_view>

#include "programs/missingfonts/ooxml/sheet/sheetfont.h"
#include "programs/missingfonts/xml/xmlnames.h"

namespace standin {

class XmlElement;

/// Reads a spreadsheet's text that may be set in several fonts.
class RichText
{
public:
    RichText(FontUsage &usage, SheetFonts &used) : m_usage(usage), m_used(used) {}

    /// A text begins.
    void begin();

    /// Whether some of it is set in the font of the cell.
    bool usesCellFont() const { return m_usesCellFont; }

    /// False for what is not shown (readings of East Asian characters).
    bool startElement(const XmlElement &element);
    void endElement(Tag tag);
    void text(std::string_view text);

private:
    FontUsage &m_usage;
    SheetFonts &m_used;
    SheetFont m_font;
    bool m_inText = false;
    bool m_usesCellFont = false;
};

} // namespace standin
