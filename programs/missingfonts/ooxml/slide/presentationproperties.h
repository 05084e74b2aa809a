#pragma once

#include "programs/missingfonts/ooxml/drawing/textlevels.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Reads a presentation's main part: the list style of its shapes and the fonts that are embedded
/// in it.
class PresentationProperties : public XmlHandler
{
public:
    explicit PresentationProperties(FontUsage &usage) : m_usage(usage), m_levelsReader(usage) {}

    const TextLevels &defaultTextStyle() const { return m_defaultTextStyle; }

    bool startElement(const XmlElement &element) override
    {
        if (element.tag() == presentationTag("defaultTextStyle"))
            m_levelsReader.setTarget(&m_defaultTextStyle);
        else if (element.tag() == presentationTag("embeddedFont"))
            m_inEmbeddedFont = true;
        else if (element.tag() != presentationTag("font"))
            m_levelsReader.startElement(element);
        else if (m_inEmbeddedFont)
            m_usage.setEmbedded(m_usage.family(element.attribute(Vocabulary::None, "typeface")));
        return true;
    }

    void endElement(Tag tag) override
    {
        m_levelsReader.endElement(tag);
        if (tag == presentationTag("defaultTextStyle"))
            m_levelsReader.setTarget(nullptr);
        else if (tag == presentationTag("embeddedFont"))
            m_inEmbeddedFont = false;
    }

private:
    FontUsage &m_usage;
    TextLevelsReader m_levelsReader;
    TextLevels m_defaultTextStyle;
    bool m_inEmbeddedFont = false;
};

} // namespace programs
