#include "programs/missingfonts/ooxml/sheet/sheetstyles.h"

#include "programs/missingfonts/common/documenterror.h"
#include "programs/missingfonts/common/limits.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

SheetFont SheetStyles::font(std::size_t format) const
{
    return format < m_formats.size() ? fontByNumber(m_formats[format]) : SheetFont();
}

SheetFont SheetStyles::fontByNumber(std::size_t number) const
{
    return number < m_fonts.size() ? m_fonts[number] : SheetFont();
}

void SheetStyles::addFont(const SheetFont &font)
{
    if (m_fonts.size() >= limits::cellFormats)
        throw DocumentError("the workbook has too many fonts");
    m_fonts.push_back(font);
}

void SheetStyles::addFormat(std::uint32_t font)
{
    if (m_formats.size() >= limits::cellFormats)
        throw DocumentError("the workbook has too many cell formats");
    m_formats.push_back(font);
}

bool SheetStyles::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case sheetTag("fonts"):
        m_inFonts = true;
        break;
    case sheetTag("font"):
        if (m_inFonts)
            addFont({});
        break;
    case sheetTag("name"):
        if (m_inFonts && !m_fonts.empty())
            m_fonts.back().family = m_usage.family(element.attribute(Vocabulary::None, "val"));
        break;
    case sheetTag("scheme"):
        if (m_inFonts && !m_fonts.empty())
            m_fonts.back().scheme = sheetFontScheme(element.attribute(Vocabulary::None, "val"));
        break;
    case sheetTag("cellXfs"):
        m_inFormats = true;
        break;
    case sheetTag("xf"):
        if (m_inFormats)
            addFormat(static_cast<std::uint32_t>(element.number(Vocabulary::None, "fontId", 0)));
        break;
    default:
        break;
    }
    return true;
}

void SheetStyles::endElement(Tag tag)
{
    if (tag == sheetTag("fonts"))
        m_inFonts = false;
    else if (tag == sheetTag("cellXfs"))
        m_inFormats = false;
}

} // namespace standin
