#pragma once

#include "programs/missingfonts/ooxml/drawing/textlevels.h"
#include "programs/missingfonts/xml/xmlhandler.h"

namespace standin {

/// What a presentation's main part says of fonts: the list style of its shapes and the fonts that
/// it carries itself.
class PresentationProperties : public XmlHandler
{
public:
    explicit PresentationProperties(FontUsage &usage) : m_usage(usage), m_levelsReader(usage) {}

    const TextLevels &defaultTextStyle() const { return m_defaultTextStyle; }

    bool startElement(const XmlElement &element) override;
    void endElement(Tag tag) override;

private:
    FontUsage &m_usage;
    TextLevelsReader m_levelsReader;
    TextLevels m_defaultTextStyle;
    bool m_inEmbeddedFont = false;
};

} // namespace standin
