#pragma once

#include "programs/missingfonts/common/fontusage.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace programs {

/// Reads a text document's table of fonts: their other names, and which of them are embedded in the
/// document.
class WordFontTable : public XmlHandler
{
public:
    explicit WordFontTable(FontUsage &usage) : m_usage(usage) {}

    bool startElement(const XmlElement &element) override
    {
        switch (element.tag()) {
        case wordTag("font"):
            m_font = m_usage.family(element.attribute(Vocabulary::Word, "name"));
            break;
        case wordTag("altName"):
            m_usage.setAlternative(m_font, element.attribute(Vocabulary::Word, "val"));
            break;
        case wordTag("embedRegular"):
        case wordTag("embedBold"):
        case wordTag("embedItalic"):
        case wordTag("embedBoldItalic"):
            m_usage.setEmbedded(m_font);
            break;
        default:
            break;
        }
        return true;
    }

private:
    FontUsage &m_usage;
    Family m_font = noFamily;
};

} // namespace programs
