#include "programs/missingfonts/ooxml/sheet/richtext.h"

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

void RichText::begin()
{
    m_font = SheetFont();
    m_inText = false;
    m_usesCellFont = false;
}

bool RichText::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case Tag::SheetPhonetic:
        return false;
    case Tag::SheetRichRun:
        m_font = SheetFont();
        break;
    case Tag::SheetRichFontName:
        m_font.family = m_usage.family(element.attribute(Vocabulary::None, "val"));
        break;
    case Tag::SheetScheme:
        m_font.scheme = sheetFontScheme(element.attribute(Vocabulary::None, "val"));
        break;
    case Tag::SheetText:
        m_inText = true;
        break;
    default:
        break;
    }
    return true;
}

void RichText::endElement(Tag tag)
{
    if (tag == Tag::SheetText)
        m_inText = false;
}

void RichText::text(std::string_view text)
{
    if (!m_inText || text.empty())
        return;
    if (m_font.family == noFamily)
        m_usesCellFont = true;
    else
        m_used.insert(m_font);
}

} // namespace standin
