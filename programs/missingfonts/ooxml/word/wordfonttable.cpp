#include "programs/missingfonts/ooxml/word/wordfonttable.h"

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

bool WordFontTable::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case Tag::WordFont:
        m_font = m_usage.family(element.attribute(Vocabulary::Word, "name"));
        break;
    case Tag::WordAlternativeName:
        m_usage.setAlternative(m_font, element.attribute(Vocabulary::Word, "val"));
        break;
    case Tag::WordEmbedRegular:
    case Tag::WordEmbedBold:
    case Tag::WordEmbedItalic:
    case Tag::WordEmbedBoldItalic:
        m_usage.setEmbedded(m_font);
        break;
    default:
        break;
    }
    return true;
}

} // namespace standin
