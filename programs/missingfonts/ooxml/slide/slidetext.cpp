#include "programs/missingfonts/ooxml/slide/slidetext.h"

#include "programs/missingfonts/ooxml/slide/slidetemplate.h"
#include "programs/missingfonts/xml/xmlelement.h"

namespace standin {

SlideText::SlideText(FontUsage &usage, const SlideContext &context, Placeholders placeholders)
    : DrawingText(usage, context.theme), m_context(context), m_placeholders(placeholders)
{
    beginShape({&m_context.defaultTextStyle});
}

bool SlideText::startElement(const XmlElement &element)
{
    switch (element.tag()) {
    case presentationTag("sp"):
    case presentationTag("graphicFrame"):
        m_isLeftOut = false;
        beginShape({&m_context.defaultTextStyle});
        return true;
    case presentationTag("ph"):
        if (m_placeholders == Placeholders::LeaveOut)
            m_isLeftOut = true;
        else
            beginShape(placeholderStyles(element));
        return true;
    default:
        return DrawingText::startElement(element);
    }
}

void SlideText::endElement(Tag tag)
{
    if (tag == presentationTag("sp") || tag == presentationTag("graphicFrame"))
        m_isLeftOut = false;
    DrawingText::endElement(tag);
}

void SlideText::text(std::string_view text)
{
    if (!m_isLeftOut)
        DrawingText::text(text);
}

std::vector<const TextLevels *> SlideText::placeholderStyles(const XmlElement &element) const
{
    const PlaceholderKey key = PlaceholderKey::read(element);
    std::vector<const TextLevels *> styles;
    for (const TextLevels *levels : {m_context.layout.byIndex(key), m_context.master.byType(key)}) {
        if (levels)
            styles.push_back(levels);
    }
    styles.push_back(&m_context.master.textStyle(key));
    styles.push_back(&m_context.defaultTextStyle);
    return styles;
}

} // namespace standin
