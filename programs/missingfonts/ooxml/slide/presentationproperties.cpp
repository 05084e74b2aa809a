#include "programs/missingfonts/ooxml/slide/presentationproperties.h"

#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

bool PresentationProperties::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case Tag::PresentationDefaultStyle:
        m_levelsReader.setTarget(&m_defaultTextStyle);
        break;
    case Tag::PresentationEmbeddedFont:
        m_inEmbeddedFont = true;
        break;
    case Tag::PresentationFont:
        if (m_inEmbeddedFont)
            m_usage.setEmbedded(m_usage.family(element.attribute(Vocabulary::None, "typeface")));
        break;
    default:
        m_levelsReader.startElement(element);
        break;
    }
    return true;
}

void PresentationProperties::endElement(Tag tag)
{
    m_levelsReader.endElement(tag);
    if (tag == Tag::PresentationDefaultStyle)
        m_levelsReader.setTarget(nullptr);
    else if (tag == Tag::PresentationEmbeddedFont)
        m_inEmbeddedFont = false;
}

} // namespace standin
